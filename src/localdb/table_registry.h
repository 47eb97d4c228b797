// Which tables can be copied: the table id's ERP table, local name and caption.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// Fills TableRegistry, on a connection of its own, from the rows of this product and the generation's group. A failure
/// goes to WriteErrorLog; what was stored before it stays.
void LoadTableRegistry(modDeclarations& process, const Text& ConnectionString, const Text& LocalDatabase,
                       std::int16_t DatabasePlatform);

/// Fills TableRegistry on an open connection with `rows`, a closed recordset, which it closes at its end. False when
/// the group has no table. Raises what the database says, and 9 for a table id outside 0 to 128; what was stored before
/// it stays.
bool ReadTableRegistry(modDeclarations& process, const std::shared_ptr<Connection>& connection, Recordset& rows);

/// The query of the table ids of the generation's group. No order is asked for; nodes without a table are left out.
Text GroupQuery(const modDeclarations& process);

/// The fields of an entry; the ERP table id and the name are trimmed, an entry that no row filled gives empty texts. An
/// id outside 0 to 128 raises 9.
Text GetTableCaption(const modDeclarations& process, std::int32_t tableId);
Text GetErpTableId(const modDeclarations& process, std::int32_t tableId);
Text GetTableName(const modDeclarations& process, std::int32_t tableId);

}  // namespace zenqay
