#pragma once
#include <platform/ado/com/com_support.h>

namespace ado20::com {

/// The catalog of ADOX. Its one call goes by name, through IDispatch.
class ComCatalog : public Catalog {
  public:
    ComCatalog() : m_inner(createdObject(L"ADOX.Catalog")) {}
    _ConnectionPtr Create(std::string_view connectionString) override;

  private:
    ComApartment m_apartment;
    ComPointer<IUnknown> m_inner;
};

}  // namespace ado20::com
