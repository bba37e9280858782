#include <windows.h>
#include <ole2.h>

#include <string>

#include <platform/ado/com/com_catalog.h>
#include <platform/ado/com/com_recordset.h>
#include <platform/ado/connection_string.h>
#include <platform/ado/engines.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace ado20 {

namespace {

using com::ComCatalog;
using com::ComConnection;
using com::ComRecordset;

/// What a connection string asks for.
struct Wanted {
    bool embedded;  ///< the embedded engine and no other
    bool access;    ///< an Access provider, or none
    std::string file;
};

Wanted wantedBy(std::string_view connectionString) {
    const ConnectionString string(resolveDataLink(connectionString));
    const std::string provider = string.value("Provider");
    return {platform::equalNoCase1252(provider, "SQLite"), isAccessProvider(provider),
            string.value("Data Source")};
}

/// A file that the embedded engine may open in ADO's place: its own, or an empty one.
bool isEmbeddedFile(const std::string& path) {
    constexpr std::string_view mark{"SQLite format 3\0", 16};
    const std::unique_ptr<platform::File> file =
        platform::theFiles().open(path.c_str(), platform::OpenMode::read);
    if (file == nullptr) return false;
    char start[16] = {};
    const std::int64_t size = file->readAt(0, start, sizeof start);
    return size == 0 || std::string_view(start, sizeof start) == mark;
}

void traceFallback(const std::string& file, const _com_error& error) {
    traceLine("ADO ne peut pas ouvrir '" + file + "' (" + error.Description() +
              ") : le moteur SQLite l'ouvre");
}

/// A connection that chooses its engine when it is opened; until then the embedded one keeps its properties.
class ChoosingConnection : public _Connection {
  public:
    ChoosingConnection() : m_engine(createConnection(Engine::embedded)) {}

    HResult Open(std::string_view connectionString, std::string_view user, std::string_view password,
                 long options) override {
        if (GetState() == adStateOpen) throw _com_error(hrObjectOpen);
        const std::string text =
            connectionString.empty() ? GetConnectionString() : std::string(connectionString);
        const Wanted wanted = wantedBy(text);
        if (wanted.embedded) return m_chosen = true, onEmbedded()->Open(text);
        try {
            const _ConnectionPtr ado(new ComConnection);
            ado->PutCursorLocation(GetCursorLocation());
            if (GetMode() != adModeUnknown) ado->PutMode(GetMode());
            ado->Open(text, user, password, options);
            m_engine = ado;
        } catch (const _com_error& error) {
            if (!wanted.access || !isEmbeddedFile(wanted.file)) throw;
            traceFallback(wanted.file, error);
            onEmbedded()->Open(text);
        }
        m_chosen = true;
        return hrOk;
    }
    HResult Close() override { return m_engine->Close(); }
    _RecordsetPtr Execute(std::string_view command, std::int64_t* affected, long options) override {
        return m_engine->Execute(command, affected, options);
    }
    long BeginTrans() override { return m_engine->BeginTrans(); }
    HResult CommitTrans() override { return m_engine->CommitTrans(); }
    HResult RollbackTrans() override { return m_engine->RollbackTrans(); }
    _RecordsetPtr OpenSchema(SchemaEnum schema) override { return m_engine->OpenSchema(schema); }
    std::vector<ProviderError> GetErrors() override { return m_engine->GetErrors(); }
    std::string GetConnectionString() override { return m_engine->GetConnectionString(); }
    void PutConnectionString(std::string_view text) override { m_engine->PutConnectionString(text); }
    ConnectModeEnum GetMode() override { return m_engine->GetMode(); }
    void PutMode(ConnectModeEnum mode) override { m_engine->PutMode(mode); }
    CursorLocationEnum GetCursorLocation() override { return m_engine->GetCursorLocation(); }
    void PutCursorLocation(CursorLocationEnum location) override { m_engine->PutCursorLocation(location); }
    ObjectStateEnum GetState() override { return m_engine->GetState(); }
    std::string GetProvider() override { return m_engine->GetProvider(); }
    Engine GetEngine() override { return m_chosen ? m_engine->GetEngine() : Engine::automatic; }
    std::uintptr_t GetHandle() override { return m_engine->GetHandle(); }
    _Connection* GetEngineObject() override { return m_engine->GetEngineObject(); }

  private:
    /// The embedded engine again, where an earlier opening chose the other one.
    const _ConnectionPtr& onEmbedded() {
        if (m_engine->GetEngine() == Engine::embedded) return m_engine;
        const _ConnectionPtr fresh = createConnection(Engine::embedded);
        fresh->PutCursorLocation(m_engine->GetCursorLocation());
        return m_engine = fresh;
    }

    _ConnectionPtr m_engine;
    bool m_chosen = false;
};

/// A recordset of the engine of the connection that it is opened on; before, and without one, of the embedded
/// engine.
class ChoosingRecordset : public _Recordset {
  public:
    ChoosingRecordset() : m_engine(createRecordset(Engine::embedded)) {}

    HResult Open(const Variant& source, const _ConnectionPtr& connection, CursorTypeEnum cursor,
                 LockTypeEnum lock, long options) override {
        _Connection* const object = connection ? connection->GetEngineObject() : nullptr;
        const bool ado = dynamic_cast<ComConnection*>(object) != nullptr;
        if (GetState() == adStateClosed && ado != (dynamic_cast<ComRecordset*>(m_engine.get()) != nullptr)) {
            const _RecordsetPtr other = createRecordset(ado ? Engine::com : Engine::embedded);
            other->PutCursorLocation(m_engine->GetCursorLocation());
            m_engine = other;
        }
        return m_engine->Open(source, _ConnectionPtr(object), cursor, lock, options);
    }
    HResult Close() override { return m_engine->Close(); }
    HResult Requery() override { return m_engine->Requery(); }
    HResult Move(std::int64_t records, const Variant& start) override {
        return m_engine->Move(records, start);
    }
    HResult MoveFirst() override { return m_engine->MoveFirst(); }
    HResult MoveLast() override { return m_engine->MoveLast(); }
    HResult MoveNext() override { return m_engine->MoveNext(); }
    HResult MovePrevious() override { return m_engine->MovePrevious(); }
    bool GetBOF() override { return m_engine->GetBOF(); }
    bool GetEOF() override { return m_engine->GetEOF(); }
    std::int64_t GetAbsolutePosition() override { return m_engine->GetAbsolutePosition(); }
    void PutAbsolutePosition(std::int64_t position) override { m_engine->PutAbsolutePosition(position); }
    std::int64_t GetRecordCount() override { return m_engine->GetRecordCount(); }
    Variant GetBookmark() override { return m_engine->GetBookmark(); }
    void PutBookmark(const Variant& bookmark) override { m_engine->PutBookmark(bookmark); }
    HResult Find(std::string_view criterion, std::int64_t skip, SearchDirectionEnum direction,
                 const Variant& start) override {
        return m_engine->Find(criterion, skip, direction, start);
    }
    std::string GetSort() override { return m_engine->GetSort(); }
    void PutSort(std::string_view sort) override { m_engine->PutSort(sort); }
    std::string GetFilter() override { return m_engine->GetFilter(); }
    void PutFilter(std::string_view criteria) override { m_engine->PutFilter(criteria); }
    HResult AddNew() override { return m_engine->AddNew(); }
    HResult Update() override { return m_engine->Update(); }
    HResult CancelUpdate() override { return m_engine->CancelUpdate(); }
    HResult Delete(AffectEnum affect) override { return m_engine->Delete(affect); }
    EditModeEnum GetEditMode() override { return m_engine->GetEditMode(); }
    FieldsPtr GetFields() override { return m_engine->GetFields(); }
    VariantView GetCollectView(std::string_view name) override { return m_engine->GetCollectView(name); }
    VariantView GetCollectView(long index) override { return m_engine->GetCollectView(index); }
    void PutCollect(std::string_view name, const Variant& value) override {
        m_engine->PutCollect(name, value);
    }
    void PutCollect(long index, const Variant& value) override { m_engine->PutCollect(index, value); }
    ObjectStateEnum GetState() override { return m_engine->GetState(); }
    std::string GetSource() override { return m_engine->GetSource(); }
    CursorTypeEnum GetCursorType() override { return m_engine->GetCursorType(); }
    LockTypeEnum GetLockType() override { return m_engine->GetLockType(); }
    CursorLocationEnum GetCursorLocation() override { return m_engine->GetCursorLocation(); }
    void PutCursorLocation(CursorLocationEnum location) override { m_engine->PutCursorLocation(location); }
    _ConnectionPtr GetActiveConnection() override { return m_engine->GetActiveConnection(); }
    bool Supports(long options) override { return m_engine->Supports(options); }

  private:
    _RecordsetPtr m_engine;
};

class ChoosingCatalog : public Catalog {
  public:
    _ConnectionPtr Create(std::string_view connectionString) override {
        const Wanted wanted = wantedBy(connectionString);
        const CatalogPtr embedded = createCatalog(Engine::embedded);
        if (wanted.embedded) return embedded->Create(connectionString);
        try {
            return CatalogPtr(new ComCatalog)->Create(connectionString);
        } catch (const _com_error& error) {
            const bool absent = platform::theFiles().kind(wanted.file.c_str()) == platform::FileKind::missing;
            if (!wanted.access || !absent) throw;
            traceFallback(wanted.file, error);
            return embedded->Create(connectionString);
        }
    }
};

}  // namespace

_ConnectionPtr systemConnection(Engine engine) {
    if (engine == Engine::com) return _ConnectionPtr(new ComConnection);
    return _ConnectionPtr(new ChoosingConnection);
}

_RecordsetPtr systemRecordset(Engine engine) {
    if (engine == Engine::com) return _RecordsetPtr(new ComRecordset);
    return _RecordsetPtr(new ChoosingRecordset);
}

CatalogPtr systemCatalog(Engine engine) {
    if (engine == Engine::com) return CatalogPtr(new ComCatalog);
    return CatalogPtr(new ChoosingCatalog);
}

ComApartment::ComApartment() : m_initialised(SUCCEEDED(CoInitialize(nullptr))) {}

ComApartment::~ComApartment() {
    if (m_initialised) CoUninitialize();
}

}  // namespace ado20
