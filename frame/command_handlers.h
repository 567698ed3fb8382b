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

void ade_attach_data(Session& session);
void rm(Session& session);
void rm_all(Session& session);
void remove_duplicate_od(Session& session);
void rm_unused(Session& session);

}  // namespace korvel
