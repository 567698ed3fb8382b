// The handlers that the command table names. Each is defined in the folder of its family; declaring
// them here keeps the table from including those folders.
#pragma once

namespace korvel {

struct Session;

void about(Session& session);

void has_od(Session& session);
void has_no_od(Session& session);
void has_multiple_od(Session& session);
void has_duplicate_od(Session& session);

void break_entity(Session& session);
void to_2d_polylines(Session& session);
void to_3d_polylines(Session& session);

}  // namespace korvel
