#include <platform/ado/com/com_recordset.h>

namespace ado20::com {

namespace {

class ComField : public Field {
  public:
    explicit ComField(ComPointer<IAdoField> inner) : m_inner(std::move(inner)) {}
    std::string GetName() override {
        Bstr name;
        check(m_inner->get_Name(name.out()));
        return name.text();
    }
    DataTypeEnum GetType() override {
        int type = 0;
        check(m_inner->get_Type(&type));
        return static_cast<DataTypeEnum>(type);
    }
    std::int64_t GetDefinedSize() override {
        Long size = 0;
        check(m_inner->get_DefinedSize(&size));
        return signedPosition(size);
    }
    std::int64_t GetActualSize() override {
        Long size = 0;
        check(m_inner->get_ActualSize(&size));
        return signedPosition(size);
    }
    long GetAttributes() override {
        long attributes = 0;
        check(m_inner->get_Attributes(&attributes));
        return attributes;
    }
    VariantView GetView() override {
        ComVariant value;
        check(m_inner->get_Value(value.out()));
        m_value = value.value();
        return m_value.view();
    }
    void PutValue(const Variant& value) override { check(m_inner->put_Value(ComVariant(value).get())); }
    Variant GetOriginalValue() override {
        ComVariant value;
        check(m_inner->get_OriginalValue(value.out()));
        return value.value();
    }

  private:
    ComApartment m_apartment;
    ComPointer<IAdoField> m_inner;
    Variant m_value;  ///< what `GetView` shows
};

class ComFields : public Fields {
  public:
    explicit ComFields(ComPointer<IAdoFields> inner) : m_inner(std::move(inner)) {}
    long GetCount() override {
        long count = 0;
        check(m_inner->get_Count(&count));
        return count;
    }
    FieldPtr GetItem(long index) override { return item(Variant(index)); }
    FieldPtr GetItem(std::string_view name) override { return item(Variant(name)); }
    HResult Append(std::string_view name, DataTypeEnum type, std::int64_t definedSize,
                   long attributes) override {
        const ComVariant missing{Variant::missing()};
        return check(m_inner->Append(Bstr(name).get(), type, definedSize, static_cast<int>(attributes),
                                     missing.get()));
    }

  private:
    FieldPtr item(const Variant& index) {
        ComPointer<IAdoField> field;
        check(m_inner->get_Item(ComVariant(index).get(), field.out()));
        if (field.get() == nullptr) throw _com_error(hrItemNotFound);
        return FieldPtr(new ComField(std::move(field)));
    }

    ComApartment m_apartment;
    ComPointer<IAdoFields> m_inner;
};

}  // namespace

FieldsPtr comFields(IUnknown* fields) {
    return FieldsPtr(new ComFields(asked<IAdoFields>(fields)));
}

}  // namespace ado20::com
