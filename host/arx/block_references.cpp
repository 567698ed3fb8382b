#include "host/arx/block_references.h"

#include "host/arx/guards.h"
#include "host/arx/object_ids.h"
#include "host/arx/parts.h"
#include "host/arx/symbol_records.h"
#include "host/arx/texts.h"

namespace korvel::arx {
namespace {

Opened<AcDbBlockReference> open_reference(EntityId entity) {
  auto opened = open_as<AcDbBlockReference>(object_id(entity), AcDb::kForRead);
  if (opened && !is_block_reference(*opened)) opened.reset();
  return opened;
}

// Unconfirmed: the two members. Null for a reference of a block that is not dynamic.
AcDbObjectId dynamic_definition_of(AcDbObjectId reference) {
  const AcDbDynBlockReference dynamic(reference);
  return dynamic.isDynamicBlock() ? dynamic.dynamicBlockTableRecord() : AcDbObjectId();
}

// Unconfirmed: the name of the member.
std::vector<AcDbObjectId> attribute_ids(EntityId entity) {
  const Opened<AcDbBlockReference> reference = open_reference(entity);
  return reference ? ids_of(reference->attributeIterator()) : std::vector<AcDbObjectId>();
}

// Unconfirmed: the members, and that the text of a multi-line attribute is the whole one.
BlockAttribute read(const AcDbAttribute& attribute) {
  return {text_of(attribute.tagConst()), text_of(attribute.textStringConst())};
}

// Unconfirmed: the members, and that a multi-line attribute follows its text when it is told to.
bool set_text(AcDbAttribute& attribute, const std::wstring& text) {
  if (attribute.setTextString(text.c_str()) != Acad::eOk) return false;
  return !attribute.isMTextAttribute() || attribute.updateMTextAttribute() == Acad::eOk;
}

}  // namespace

bool is_block_reference(const AcDbBlockReference& entity) {
  const AcRxClass* const kind = entity.isA();
  return kind == AcDbBlockReference::desc() || kind == AcDbMInsertBlock::desc();
}

// The variants of dynamic blocks are anonymous.
std::optional<std::wstring> block_name_of(EntityId entity) {
  Opened<AcDbBlockReference> reference = open_reference(entity);
  if (!reference) return std::nullopt;
  std::wstring name = name_of(reference->blockTableRecord());
  if (!name.starts_with(L'*')) return name;
  reference.reset();
  const AcDbObjectId definition = dynamic_definition_of(object_id(entity));
  return definition.isNull() ? name : name_of(definition);
}

std::vector<BlockAttribute> attributes_of(EntityId reference) {
  std::vector<BlockAttribute> attributes;
  for (const AcDbObjectId& id : attribute_ids(reference)) {
    const auto attribute = open_as<AcDbAttribute>(id, AcDb::kForRead);
    if (attribute) attributes.push_back(read(*attribute));
  }
  return attributes;
}

std::size_t set_attribute_texts(EntityId reference, const std::vector<AttributeText>& texts) {
  std::vector<AcDbObjectId> attributes = attribute_ids(reference);
  std::erase_if(attributes,
                [](const AcDbObjectId& id) { return !open_as<AcDbAttribute>(id, AcDb::kForRead); });
  std::size_t taken = 0;
  for (const AttributeText& wanted : texts) {
    if (wanted.attribute >= attributes.size()) continue;
    const auto opened = open_as<AcDbAttribute>(attributes[wanted.attribute], AcDb::kForWrite);
    if (opened && set_text(*opened, wanted.text)) ++taken;
  }
  return taken;
}

}  // namespace korvel::arx
