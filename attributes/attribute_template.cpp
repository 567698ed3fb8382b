#include "attributes/attribute_template.h"

#include <optional>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/text_file.h"

namespace korvel {

BlockCatalogue block_catalogue(DrawingHost& host, const EntityList& entities) {
  BlockCatalogue blocks;
  ReadWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    const std::optional<std::wstring> block = host.block_name_of(entity);
    if (!block) continue;
    for (BlockAttribute& attribute : host.attributes_of(entity))
      blocks[*block].insert(std::move(attribute.tag));
  }
  return blocks;
}

AttributeTemplate attribute_template(const BlockCatalogue& blocks, const ODStore& store) {
  AttributeTemplate made;
  for (const auto& [block, tags] : blocks) {
    for (const std::wstring& tag : tags)
      made.text += format_text(L"%s\t%s\t?TableName\t?ColumnName\n", block, tag);
  }
  made.text += L'\n';
  for (const std::wstring& name : store.table_names()) {
    const std::optional<ODTableDef> table = is_user_table(name) ? store.table(name) : std::nullopt;
    if (!table) continue;
    ++made.tables;
    for (const ODColumnDef& column : table->columns) {
      made.text += format_text(L"?BlockName\t?AttributeName\t%s\t%s\t?%s\n", name, column.name,
                               type_name(column.type));
    }
  }
  return made;
}

void attr_template(Session& session) {
  DrawingHost& host = session.host;
  const BlockCatalogue blocks = block_catalogue(host, selected_entities(host));
  if (blocks.empty()) return host.print(L"No valid entities selected\n");
  const auto file = host.choose_file_to_save({.filter = text(Message::TextFileFilter),
                                              .default_extension = L"txt",
                                              .confirm_overwrite = true});
  if (!file) return;

  const AttributeTemplate made = attribute_template(blocks, session.store);
  TextFileWriter writer(TextEncoding::Ansi);
  writer.write(made.text);
  const NewFile target = new_file(*file, writer.bytes());
  // Deliberately nothing is printed of a file that cannot be written.
  if (const auto failed = host.replace_files({&target, 1})) return host.report_failed_file(*failed);
  host.print(format_text(L"Generated template for %i block(s), %i table(s)\n", blocks.size(),
                         made.tables));
}

}  // namespace korvel
