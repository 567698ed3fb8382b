// Texts without their codes.
#include "values/plain_text.h"

#include <gtest/gtest.h>
#include <utility>

namespace korvel {
namespace {

using Cases = std::pair<std::wstring, std::wstring>;

TEST(PlainText, OfASingleLine) {
  const Cases cases[] = {
      {L"", L""},
      {L"100%", L"100%"},
      {L"45%%d %%P0.5 %%c20", L"45\u00B0 \u00B10.5 \u230020"},
      {L"%%uParcel%%U 7%%o%%k", L"Parcel 7"},
      {L"50%%%", L"50%"},
      {L"%%065%%233", L"A\u00E9"},
      {L"%%12 %%x %%010 %%256 %%", L"%%12 %%x %%010 %%256 %%"},
      {L"{\\P}", L"{\\P}"},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(plain_text(text), expected);
}

TEST(PlainText, OfAMultilineText) {
  const Cases cases[] = {
      {L"", L""},
      {L"Parcel\\P7\\Xa\\Nb\\~c\nd", L"Parcel 7 a b c d"},
      {L"{\\fArial|b0|i0|c238|p34;Main \\H2.5x;road}", L"Main road"},
      {L"\\A1;\\C1;\\c255;\\FTxt;\\Q15;\\T1.2;\\W0.8;\\pi0,l2;x", L"x"},
      {L"\\LUnder\\l \\OOver\\o \\KThrough\\k", L"Under Over Through"},
      {L"a\\\\b \\{c\\} {d{e}}", L"a\\b {c} de"},
      {L"\\\\P \\\\{x}", L"\\P \\x"},
      {L"\\S1/2; \\S1#2; \\S+0.1^-0.2;", L"1/2 1/2 +0.1/-0.2"},
      {L"m\\S2^; H\\S^2;O", L"m2 H2O"},
      {L"\\S1\\/2^3\\;4;", L"1/2/3;4"},
      {L"45%%d", L"45\u00B0"},
      {L"C:\\temp \\z", L"C:\\temp \\z"},
      {L"\\fArial", L"\\fArial"},  // nothing ends it
      {L"\\S1/2", L"\\S1/2"},
      {L"\\", L"\\"},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(plain_multiline_text(text), expected);
}

}  // namespace
}  // namespace korvel
