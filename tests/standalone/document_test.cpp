// The document over a DXF file: written back byte for byte in every form, damage refused with its
// place.
#include "host/standalone/dxf/document.h"

#include <gtest/gtest.h>

#include "tests/standalone/drawing_bytes.h"

namespace korvel::dxf {
namespace {

using namespace std::string_literals;
using test::framed;
using test::replaced;
using test::sample;

constexpr Framing one_byte = Framing::BinaryOneByte;
constexpr Framing two_bytes = Framing::BinaryTwoByte;

class Nothing final : public Document::Substitutions {
 public:
  bool concerns(ItemIndex) const override { return false; }
  void substitute(ItemIndex, std::string&) const override {}
  bool write_new_objects(const Document::ByteSink&) const override { return true; }
};

Result<Document> read(std::string bytes) {
  return Document::read(std::move(bytes), "a.dxf",
                        [](const Document&, ItemIndex, const ItemFacts&) {});
}

std::string written(const Document& document) {
  std::string bytes;
  const auto sink = [&bytes](std::string_view piece) {
    bytes += piece;
    return true;
  };
  EXPECT_TRUE(document.write(sink, Nothing()));
  return bytes;
}

// The types of all items, and the check that the items laid end to end are the file.
std::string types(const Document& document, std::string_view bytes) {
  std::string types;
  std::uint64_t end = 0;
  for (ItemIndex i = 0; i < document.items().size(); ++i) {
    types += std::string(document.type_of(i)) + ' ';
    EXPECT_EQ(document.item(i).span.offset, end);
    end += document.item(i).span.length;
  }
  EXPECT_EQ(end, bytes.size());
  return types;
}

TEST(Document, IsWrittenBackByteForByte) {
  const std::string lf = sample("AC1032");
  const std::string head = "0\nSECTION\n2\nENTITIES\n";
  const std::string tail = "0\nENDSEC\n0\nEOF\n";
  const std::pair<const char*, std::string> cases[] = {
      {"LF", lf},
      {"CR LF", sample("AC1015", {Framing::Ascii, "\r\n"})},
      {"binary, two-byte codes", sample("AC1032", {two_bytes, ""})},
      {"binary, one-byte codes", framed("0 SECTION\n2 ENTITIES\n0 POINT\n8 0\n10 1.5\n1001 A\n"
                                        "1071 -5\n1004 \x01\xFF\n0 ENDSEC\n0 EOF\n",
                                        {one_byte, ""})},
      {"no line end at the end", lf.substr(0, lf.size() - 1)},
      {"lines behind EOF", lf + "  0\nSECTION\nnot read any more"},
      {"Ctrl-Z", lf + "\x1A"},
      {"NULs behind EOF", lf + std::string(5, '\0')},
      {"bytes behind a binary EOF", sample("AC1032", {two_bytes, ""}) + "tail"},
      {"byte-order mark", "\xEF\xBB\xBF" + lf},
      {"comments", "999\nmade by hand\n" + replaced(lf, "  0\nENDSEC\n", "999\n\n  0\nENDSEC\n")},
      {"mixed line ends, widths and blanks",
       "  0\r\nSECTION\n 2 \nENTITIES\r\n\t0\nLINE\r\n     10\n   1.0000\n  0\nENDSEC \n0\nEOF"},
      {"values of blanks, empty values, control characters",
       head + "0\nTEXT\n1\n   \n1\n\n1\n\x01\x0C\r\x85\xE2\x80\xA8\n" + tail},
      {"negative and unknown codes", head + "0\nX\n-1\na\n9999\nb\n" + tail},
      {"no sections", "0\nEOF\n"},
      {"no HEADER", head + "0\nPOINT\n" + tail},
      {"POLYLINE and INSERT without SEQEND", head + "0\nPOLYLINE\n0\nVERTEX\n0\nINSERT\n" + tail},
      {"part of no entity", head + "0\nVERTEX\n5\n1\n0\nSEQEND\n" + tail},
  };
  for (const auto& [name, bytes] : cases) {
    const Result<Document> document = read(bytes);
    ASSERT_TRUE(document) << name << ": " << document.reason();
    EXPECT_EQ(written(*document), bytes) << name;
    EXPECT_NE(types(*document, bytes), "") << name;
  }
}

TEST(Document, CutsTheFileIntoObjectsWithTheirParts) {
  const std::string bytes = framed(
      "999 x\n0 SECTION\n2 ENTITIES\n0 POLYLINE\n5 A\n0 VERTEX\n5 B\n0 SEQEND\n5 C\n"
      "0 INSERT\n5 D\n0 LINE\n5 E\n0 ENDSEC\n0 EOF\n");
  const Result<Document> document = read(bytes);
  ASSERT_TRUE(document) << document.reason();
  EXPECT_EQ(types(*document, bytes), " SECTION POLYLINE INSERT LINE ENDSEC EOF ");
  EXPECT_EQ(document->by_handle(0xB), document->by_handle(0xA));
  EXPECT_EQ(document->by_handle(0xC), document->by_handle(0xA));
  EXPECT_NE(document->by_handle(0xE), document->by_handle(0xD));
  EXPECT_EQ(document->by_handle(0xF), std::nullopt);
}

TEST(Document, TakesHandlesAndOwnersFromTheirPlaces) {
  std::string facts;
  const auto visit = [&facts](const Document& document, ItemIndex item, const ItemFacts& found) {
    if (document.item(item).handle == 0) return;
    append_handle(facts, document.item(item).handle);
    for (const std::uint64_t handle : {found.owner, found.extension_dictionary}) {
      facts += ' ';
      append_handle(facts, handle);
    }
    facts += "; ";
  };
  const std::string entity = "0 LINE\n5 A\n102 {ACAD_REACTORS\n330 1\n102 }\n";
  const std::string bytes = framed(
      "0 SECTION\n2 TABLES\n0 DIMSTYLE\n105 D\n5 ARROW\n0 DIMSTYLE\n5 BAD\n0 ENDSEC\n"
      "0 SECTION\n2 ENTITIES\n" +
      entity + "102 {ACAD_XDICTIONARY\n360 2\n102 }\n330 3\n100 AcDbEntity\n330 4\n5 F\n" +
      "0 LINE\n5 b \n102 {ACAD_XDICTIONARY\n360 5\n102 }\n102 {ACAD_REACTORS\n330 6\n102 }\n"
      "330 7\n100 AcDbEntity\n102 {ACAD_XDICTIONARY\n360 8\n102 }\n0 ENDSEC\n0 EOF\n");
  ASSERT_TRUE(Document::read(bytes, "a.dxf", visit));
  EXPECT_EQ(facts, "D 0 0; A 3 2; B 7 5; ");
}

TEST(Document, RefusesDamageWithItsPlace) {
  const std::string head = "0\nSECTION\n2\nENTITIES\n";
  const std::string binary = sample("AC1032", {two_bytes, ""});
  const std::string cut = framed("0 SECTION\n2 ENTITIES\n0 POINT\n10 1.5\n", {two_bytes, ""});
  std::string many_types = head;
  for (int type = 0; type < 0x10000; ++type)
    many_types += "0\nT" + std::to_string(type) + '\n';
  struct {
    const char* name;
    std::string bytes;
    const char* reason;
  } const cases[] = {
      {"empty", "", "a.dxf: the file is empty"},
      {"DWG", "AC1032\0\0\0\0\0\0"s, "a.dxf: this is a DWG file; save it as DXF to open it here"},
      {"plain text", "Dear reader,\n", "a.dxf: line 1: a group code that is no number"},
      {"image", "\x89PNG\r\n\x1A\n", "a.dxf: line 1: a group code that is no number"},
      {"only a mark", "\xEF\xBB\xBF",
       "a.dxf: line 1: the end-of-file mark is missing, the file was cut short"},
      {"code that is no number", head + "0\nLINE\nten\n1.0\n",
       "a.dxf: line 7: a group code that is no number"},
      {"code with a fraction", head + "10.5\n1\n", "a.dxf: line 5: a group code that is no number"},
      {"code beyond all", head + "99999999999999999999\n1\n",
       "a.dxf: line 5: a group code that is no number"},
      {"odd number of lines", head + "0",
       "a.dxf: line 5: the file ends after a group code, its "
       "value is missing"},
      {"cut behind a group", head,
       "a.dxf: line 5: the end-of-file mark is missing, the file was cut short"},
      {"EOF inside a section", head + "0\nEOF\n",
       "a.dxf: line 5: the file ends inside a section, it was cut short"},
      {"many types", many_types + "0\nENDSEC\n0\nEOF\n",
       "a.dxf: line 131075: more than 65,535 names of types; no program writes so many"},
      {"nested section", head + "0\nSECTION\n", "a.dxf: line 5: a section begins inside another"},
      {"CR LF, line counted once", "0\r\nSECTION\r\n2\r\nENTITIES\r\nx\r\ny\r\n",
       "a.dxf: line 5: a group code that is no number"},
      {"sentinel with its line end changed", replaced(binary, "\r\n", "\n"),
       "a.dxf: line 1: a binary DXF damaged in transfer: its line ends changed"},
      {"only a sentinel", std::string(binary_sentinel),
       "a.dxf: byte 22: the end-of-file mark is missing, the file was cut short"},
      {"binary cut in a number", cut.substr(0, cut.size() - 1),
       "a.dxf: byte 51: the file ends inside a group"},
      {"binary string without end", cut + "\x01"s + "\0endless"s,
       "a.dxf: byte 61: the file ends inside a group"},
      {"binary chunk longer than the file", cut + "\x36\x01\xC8z"s,
       "a.dxf: byte 61: the file ends inside a group"},
  };
  for (const auto& c : cases) {
    const Result<Document> document = read(c.bytes);
    ASSERT_FALSE(document) << c.name;
    EXPECT_EQ(document.reason(), c.reason) << c.name;
  }
}

TEST(Document, CutAnywhereIsRefusedOrWrittenBack) {
  for (const test::Form form :
       {test::Form{}, test::Form{Framing::Ascii, "\r\n"}, test::Form{two_bytes, ""}}) {
    const std::string whole = sample("AC1015", form);
    for (std::size_t length = 0; length < whole.size(); ++length) {
      const std::string bytes = whole.substr(0, length);
      const Result<Document> document = read(bytes);
      // Nothing but the line end of the last line can be missed.
      EXPECT_EQ(static_cast<bool>(document),
                whole.ends_with("\n") && whole.find("EOF") + 3 <= length)
          << length;
      if (document) {
        EXPECT_EQ(written(*document), bytes);
      } else {
        EXPECT_TRUE(document.reason().starts_with("a.dxf: ")) << document.reason();
      }
    }
  }
}

TEST(Document, NamesTheFirstHandleThatIsUsedTwice) {
  const std::string head = "0 SECTION\n2 ENTITIES\n0 LINE\n5 A\n";
  const std::string tail = "0 ENDSEC\n0 EOF\n";
  const std::pair<std::string, const char*> cases[] = {
      {"", ""},
      {"0 LINE\n5 0\n0 LINE\n5 0\n", ""},
      {"0 LINE\n0 LINE\n5 a\n0 LINE\n5 A\n", "a.dxf: line 11: handle A is used a second time"},
      {"0 POLYLINE\n5 B\n0 VERTEX\n5 A\n0 SEQEND\n",
       "a.dxf: line 15: handle A is used a second time"},
      {"0 LINE\n5 FFFFFFFFFFFFFFFF\n0 POINT\n5 FFFFFFFFFFFFFFFF\n",
       "a.dxf: line 13: handle FFFFFFFFFFFFFFFF is used a second time"},
  };
  for (const auto& [lines, message] : cases) {
    const std::string bytes = framed(head + lines + tail);
    const Result<Document> document = read(bytes);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->duplicate_handle(), message);
    EXPECT_EQ(written(*document), bytes);
  }
}

TEST(Document, GivesOutHandlesAboveAllThatAreUsed) {
  const std::pair<std::string, std::uint64_t> cases[] = {{"100", 0x100},
                                                         {"10", 0x32},
                                                         {"0", 0x32},
                                                         {"none", 0x32},
                                                         {"FFFFFFFFFFFFFFFF", 0x32},
                                                         {"D9B071D01A0CB6A8", 0xD9B071D01A0CB6A8}};
  for (const auto& [seed, expected] : cases) {
    Result<Document> document = read(
        framed(replaced(test::sample_lines("AC1015"), "$HANDSEED\n5 100", "$HANDSEED\n5 " + seed)));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->new_handle(), expected) << seed;
    EXPECT_EQ(document->new_handle(), expected + 1) << seed;
  }
}

}  // namespace
}  // namespace korvel::dxf
