// The handlers that the command table names. Each is defined in the folder of its family; declaring
// them here keeps the table from including those folders.
#pragma once

namespace korvel {

struct Session;

void about(Session& session);

void show_commands(Session& session);
void show_table_editor(Session& session);

void has_od(Session& session);
void has_no_od(Session& session);
void has_multiple_od(Session& session);
void has_duplicate_od(Session& session);
void has_specific_od(Session& session);
void has_no_specific_od(Session& session);
void has_specific_values(Session& session);
void stat(Session& session);
void psel(Session& session);

void ade_attach_data(Session& session);
void rm(Session& session);
void rm_all(Session& session);
void remove_duplicate_od(Session& session);
void rm_unused(Session& session);

void copy_od(Session& session);
void copy_value(Session& session);
void copy_od_value(Session& session);
void copy_all(Session& session);
void copy_all_value(Session& session);
void load_definition(Session& session);

void set_xyz(Session& session);
void set_id(Session& session);
void replace_values(Session& session);
void add_val(Session& session);
void add_val_od2od(Session& session);

void break_entity(Session& session);
void to_2d_polylines(Session& session);
void to_3d_polylines(Session& session);

void set_prop(Session& session);
void set_text(Session& session);

void load_attrs(Session& session);
void store_attrs(Session& session);
void attr_template(Session& session);

void expl(Session& session);
void translate(Session& session);

}  // namespace korvel
