#include <platform/ado/engines.h>

namespace ado20 {

namespace {

Engine onlyEmbedded(Engine engine) {
    if (engine == Engine::com) throw _com_error(hrClassNotRegistered);
    return Engine::embedded;
}

}  // namespace

_ConnectionPtr systemConnection(Engine engine) {
    return createConnection(onlyEmbedded(engine));
}

_RecordsetPtr systemRecordset(Engine engine) {
    return createRecordset(onlyEmbedded(engine));
}

CatalogPtr systemCatalog(Engine engine) {
    return createCatalog(onlyEmbedded(engine));
}

ComApartment::ComApartment() = default;
ComApartment::~ComApartment() = default;

}  // namespace ado20
