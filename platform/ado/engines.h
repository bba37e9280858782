#pragma once
#include <string>

#include <platform/ado/ado.h>

/// What the system has beside the embedded engine: on Windows ADO itself, and objects that choose between the
/// two when they are opened; elsewhere nothing, so that `automatic` is the embedded engine and `com` throws
/// REGDB_E_CLASSNOTREG.
namespace ado20 {

_ConnectionPtr systemConnection(Engine engine);
_RecordsetPtr systemRecordset(Engine engine);
CatalogPtr systemCatalog(Engine engine);

void traceLine(const std::string& text);

}  // namespace ado20
