#include <platform/ado/embedded/catalog.h>
#include <platform/ado/embedded/recordset.h>
#include <platform/ado/engines.h>

namespace ado20 {

namespace {

TraceLine traceOutput = nullptr;

/// The embedded engine where it is asked for, else what the system has.
template <class Embedded, class Interface>
Pointer<Interface> created(Engine engine, Pointer<Interface> (*systemObject)(Engine)) {
    if (engine == Engine::embedded) return Pointer<Interface>(new Embedded);
    return systemObject(engine);
}

}  // namespace

_ConnectionPtr createConnection(Engine engine) {
    return created<embedded::Connection>(engine, systemConnection);
}

_RecordsetPtr createRecordset(Engine engine) {
    return created<embedded::Recordset>(engine, systemRecordset);
}

CatalogPtr createCatalog(Engine engine) {
    return created<embedded::Catalog>(engine, systemCatalog);
}

TraceLine replaceTraceLine(TraceLine output) {
    const TraceLine before = traceOutput;
    traceOutput = output;
    return before;
}

void traceLine(const std::string& text) {
    if (traceOutput != nullptr) traceOutput(text.c_str());
}

}  // namespace ado20
