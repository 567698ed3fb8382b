#include "host/standalone/drawing_reader.h"

#include "frame/case_mapping.h"
#include "host/standalone/layer_record.h"

namespace korvel {
namespace {

constexpr std::uint32_t model_block = 0;
constexpr std::uint32_t paper_block = 1;

bool is_model_space(std::wstring_view block) {
  return equal_ignoring_case(block, L"*Model_Space") || equal_ignoring_case(block, L"$MODEL_SPACE");
}

// Layouts other than the active one are "*Paper_Space0" and so on.
bool is_paper_space(std::wstring_view block) {
  const std::wstring name = lower(block);
  return name.starts_with(L"*paper_space") || name == L"$paper_space";
}

Point3 base_point(const dxf::Document& document, dxf::ItemIndex item) {
  Point3 base;
  dxf::GroupReader reader = document.groups(item);
  dxf::Group group;
  while (reader.next(group)) {
    if (group.code == 10) base.x = group.real();
    if (group.code == 20) base.y = group.real();
    if (group.code == 30) base.z = group.real();
  }
  return base;
}

}  // namespace

Result<std::unique_ptr<Drawing>> DrawingReader::read(std::string bytes, const std::string& name) {
  drawing_.reset(new Drawing);
  drawing_->blocks_.push_back({L"*Model_Space", Space::Model, {}, {}});
  drawing_->blocks_.push_back({L"*Paper_Space", Space::Paper, {}, {}});
  const auto visit = [this](const dxf::Document& document, dxf::ItemIndex item,
                            const dxf::ItemFacts& facts) {
    switch (document.item(item).section) {
      case dxf::Section::Tables:
        take_table_record(document, item, facts);
        break;
      case dxf::Section::Blocks:
        take_in_blocks(document, item, facts);
        break;
      case dxf::Section::Entities:
        if (!dxf::is_section_mark(document.type_of(item))) {
          take_entity(document, item, facts, facts.paper_space ? paper_block : model_block);
        }
        break;
      case dxf::Section::Objects:
        take_object(document, item);
        break;
      default:
        break;
    }
  };
  Result<dxf::Document> document = dxf::Document::read(std::move(bytes), name, visit);
  if (!document) return document.failure();
  drawing_->document_ = std::move(*document);
  if (drawing_->model_space_owner_ == 0) drawing_->model_space_owner_ = first_model_owner_;
  set_slots();
  OdReader(*drawing_, heads_).read();
  add_notices();
  drawing_->saved_header_ = drawing_->document_.header_span();
  drawing_->od_.set_journal(&drawing_->journal_);
  return std::move(drawing_);
}

void DrawingReader::set_slots() {
  dxf::Document& document = drawing_->document_;
  for (std::uint32_t i = 0; i < drawing_->entities_.size(); ++i) {
    document.item(drawing_->entities_[i].item).slot = i;
  }
  for (std::uint32_t i = 0; i < drawing_->layer_items_.size(); ++i) {
    if (drawing_->layer_items_[i] != dxf::no_index) {
      document.item(drawing_->layer_items_[i]).slot = i;
    }
  }
}

void DrawingReader::take_table_record(const dxf::Document& document, dxf::ItemIndex item,
                                      const dxf::ItemFacts& facts) {
  const std::string_view type = document.type_of(item);
  if (type == "LAYER") {
    const std::uint32_t index = drawing_->layer_index(document.codec().decode(facts.name));
    if (drawing_->layer_items_[index] == dxf::no_index) {
      drawing_->layer_items_[index] = item;
      read_layer_state(document, item, drawing_->layers_[index]);
    }
  } else if (type == "BLOCK_RECORD" && is_model_space(document.codec().decode(facts.name))) {
    drawing_->model_space_owner_ = document.item(item).handle;
  }
}

void DrawingReader::take_in_blocks(const dxf::Document& document, dxf::ItemIndex item,
                                   const dxf::ItemFacts& facts) {
  const std::string_view type = document.type_of(item);
  if (type == "BLOCK") {
    begin_block(document, item, facts);
  } else if (type == "ENDBLK" || dxf::is_section_mark(type)) {
    in_block_ = false;
  } else if (in_block_) {
    take_entity(document, item, facts, block_);
  }
}

void DrawingReader::begin_block(const dxf::Document& document, dxf::ItemIndex item,
                                const dxf::ItemFacts& facts) {
  in_block_ = true;
  std::wstring name = document.codec().decode(facts.name);
  if (is_model_space(name)) {
    block_ = model_block;
    return;
  }
  block_ = static_cast<std::uint32_t>(drawing_->blocks_.size());
  // Of two definitions of one name the first is the one that references mean.
  drawing_->blocks_by_name_.try_emplace(lower(name), block_);
  const Space space = is_paper_space(name) ? Space::Paper : Space::Block;
  drawing_->blocks_.push_back({std::move(name), space, base_point(document, item), {}});
}

std::uint32_t DrawingReader::layer_index(const dxf::Document& document, std::string_view raw) {
  if (!has_last_layer_ || raw != last_layer_raw_) {
    last_layer_raw_ = raw;
    last_layer_ = drawing_->layer_index(document.codec().decode(raw));
    has_last_layer_ = true;
  }
  return last_layer_;
}

void DrawingReader::take_entity(const dxf::Document& document, dxf::ItemIndex item,
                                const dxf::ItemFacts& facts, std::uint32_t block) {
  const auto index = static_cast<std::uint32_t>(drawing_->entities_.size());
  Drawing::Entity entity;
  entity.item = item;
  entity.layer = layer_index(document, facts.layer);
  entity.block = block;
  ++drawing_->entities_on_[entity.layer];
  drawing_->entities_.push_back(entity);
  heads_.push_back({facts.sound_head, facts.extension_dictionary});
  Drawing::BlockDefinition& owner = drawing_->blocks_[block];
  if (owner.space == Space::Block) owner.entities.push_back(index);
  if (block == model_block && first_model_owner_ == 0) first_model_owner_ = facts.owner;
}

void DrawingReader::take_object(const dxf::Document& document, dxf::ItemIndex item) {
  const std::string_view type = document.type_of(item);
  if (type == "DICTIONARY") {
    if (drawing_->definition_items_.root == dxf::no_index) {
      drawing_->definition_items_.root = item;  // the first one is the root
    }
  } else if (type == "IRD_OBJ_RECORD") {
    ++foreign_records_;
  }
}

void DrawingReader::add_notices() {
  const dxf::Document& document = drawing_->document_;
  if (!document.duplicate_handle().empty()) {
    drawing_->notices_.push_back(document.duplicate_handle() +
                                 "; the objects are kept, CAD programs may refuse the file");
  }
  if (foreign_records_ > 0) {
    drawing_->notices_.push_back(
        "the drawing holds " + std::to_string(foreign_records_) +
        " object-data records of the CAD host; they are kept, but not read here");
  }
}

}  // namespace korvel
