#include <windows.h>
#include <oleauto.h>

#include <platform/ado/com/com_catalog.h>
#include <platform/ado/com/com_connection.h>

namespace ado20::com {

namespace {

/// A failure of a call by name, with what the called object says of it.
void checkInvoked(HRESULT result, EXCEPINFO& exception) {
    Bstr source, description, help;
    *source.out() = exception.bstrSource;
    *description.out() = exception.bstrDescription;
    *help.out() = exception.bstrHelpFile;
    if (result != DISP_E_EXCEPTION) {
        check(result);
        return;
    }
    const auto code = static_cast<HResult>(FAILED(exception.scode) ? exception.scode : E_FAIL);
    if (description.text().empty()) throw _com_error(code);
    throw _com_error(code, description.text(), source.text());
}

}  // namespace

/// The connection that the catalog answers is let go: the new database is opened anew, as a host would.
_ConnectionPtr ComCatalog::Create(std::string_view connectionString) {
    ComPointer<IDispatch> dispatch;
    check(m_inner->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.out())));
    wchar_t method[] = L"Create";
    LPOLESTR name = method;
    DISPID identifier = 0;
    check(dispatch->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &identifier));
    ComVariant argument{Variant(connectionString)};
    DISPPARAMS arguments{argument.out(), nullptr, 1, 0};
    EXCEPINFO exception{};
    {
        ComVariant connection;
        const HRESULT result = dispatch->Invoke(identifier, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                &arguments, connection.out(), &exception, nullptr);
        checkInvoked(result, exception);
    }
    const _ConnectionPtr connection(new ComConnection);
    // The database stands; a provider that lets nobody in yet leaves the connection closed.
    try {
        connection->Open(connectionString);
    } catch (const _com_error&) {
    }
    return connection;
}

}  // namespace ado20::com
