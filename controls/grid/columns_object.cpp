#include "controls/grid/columns_object.h"

#include <vector>

#include "com/variant_enumerator.h"
#include "common/text_compare.h"
#include "controls/grid/caption_list.h"
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {

class ColumnsObject final : public ComObject<Dispatch<IGridColumns>, ErrorInfoSupport<IGridColumns>> {
  public:
    explicit ColumnsObject(ComboGridControl& control) : control_(&control) {}
    void Detach() { control_ = nullptr; }
    ComboGridControl& Control() const {
        if (!control_) throw RunTimeError(errors::objectUnloaded, u"Object was unloaded");
        return *control_;
    }

    STDMETHODIMP get_Item(VARIANT index, IGridColumn** result) override {
        return Give(result, [&] { return Column(ColumnNamed(index)).detach(); });
    }
    STDMETHODIMP get_Count(long* result) override {
        return Give(result, [&] { return Model().Cols(); });
    }
    STDMETHODIMP get__NewEnum(IUnknown** result) override {
        return Give(result, [&] {
            std::vector<Variant> all;
            for (int col = 0; col < Model().Cols(); ++col)
                all.push_back(Variant(static_cast<IDispatch*>(Column(col).get())));
            return MakeObject<VariantEnumerator>(std::move(all)).detach();
        });
    }

  private:
    ~ColumnsObject() override = default;

    flexgrid::Grid& Model() const { return Control().Entry().Model(); }
    // Returns the column that has this key in ColIndex, or this number.
    int ColumnNamed(const VARIANT& index) const;
    ComPtr<IGridColumn> Column(int col);

    ComboGridControl* control_;
};

namespace {

// Refers to its column by the identity that this has in the grid, so that it follows it wherever it moves.
class ColumnObject final : public ComObject<Dispatch<IGridColumn>, ErrorInfoSupport<IGridColumn>> {
  public:
    ColumnObject(ComPtr<ColumnsObject> columns, std::uint32_t id) : columns_(std::move(columns)), id_(id) {}

// A property that is a setting of the column.
#define QVX_SETTING(Type, Name, Setting)                                                                   \
    STDMETHODIMP get_##Name(Type* result) override { return Read(result, ColumnSetting::Setting, false); } \
    STDMETHODIMP put_##Name(Type value) override { return Write(value, ColumnSetting::Setting, false); }

    QVX_SETTING(GridColumnType, DataType, dataType)
    QVX_SETTING(VARIANT_BOOL, Required, required)
    QVX_SETTING(GridColumnSign, Sign, sign)
    QVX_SETTING(VARIANT_BOOL, List, list)
    QVX_SETTING(VARIANT_BOOL, ListOnly, listOnly)
    QVX_SETTING(long, MaxLength, maxLength)
    QVX_SETTING(VARIANT_BOOL, ReadOnly, inactive)
    QVX_SETTING(GridColumnFooter, Footer, footer)
#undef QVX_SETTING

    STDMETHODIMP get_TabStop(VARIANT_BOOL* result) override { return Read(result, ColumnSetting::skipped, true); }
    STDMETHODIMP put_TabStop(VARIANT_BOOL value) override { return Write(value, ColumnSetting::skipped, true); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* result) override { return Read(result, ColumnSetting::invisible, true); }
    STDMETHODIMP put_Visible(VARIANT_BOOL value) override {
        return Act([&](ComboGridControl& control, int col) { return control.ShowColumn(col, value != VARIANT_FALSE); });
    }
    STDMETHODIMP get_Caption(BSTR* result) override {
        return Give(result, [&] { return CaptionOf(Control().Entry().Model(), Col()); });
    }
    STDMETHODIMP put_Caption(BSTR value) override {
        return Act([&](ComboGridControl& control, int col) { return control.RenameColumn(col, FromBstr(value)); });
    }
    STDMETHODIMP get_Index(long* result) override {
        return Give(result, [&] { return Col(); });
    }
    STDMETHODIMP get_Width(long* result) override {
        return Give(result, [&] { return Control().Entry().Model().ColWidth(Col()); });
    }
    STDMETHODIMP put_Width(long value) override {
        return Act([&](ComboGridControl& control, int col) { return control.put_ColWidth(col, value); });
    }
    STDMETHODIMP get_Alignment(GridAlignment* result) override {
        return Give(result, [&] { return Control().Entry().Model().ColAlignment(Col()); });
    }
    STDMETHODIMP put_Alignment(GridAlignment value) override {
        return Act([&](ComboGridControl& control, int col) {
            CheckedEnum<flexgrid::GridAlignment>(value);
            return control.put_ColAlignment(col, static_cast<short>(value));
        });
    }
    STDMETHODIMP get_FooterText(BSTR* result) override {
        return Give(result, [&] { return Control().Entry().FooterText(Col()); });
    }

    STDMETHODIMP get_Format(BSTR* result) override {
        return Give(result, [&] {
            EntryGrid& entry = Control().Entry();
            return Text(TextForCaption(entry.ColumnFormats(), CaptionOf(entry.Model(), Col())));
        });
    }
    STDMETHODIMP put_Format(BSTR value) override {
        return Act([&](ComboGridControl& control, int col) {
            const Text caption = CaptionOf(control.Entry().Model(), col);
            return control.put_ColumnFormats(
                Bstr(WithTextForCaption(control.Entry().ColumnFormats(), caption, FromBstr(value))).get());
        });
    }
    STDMETHODIMP get_Frozen(VARIANT_BOOL* result) override {
        return Give(result, [&] {
            const flexgrid::Grid& grid = Control().Entry().Model();
            const int col = Col();
            return col >= grid.FixedCols() && col < grid.StandingCols();
        });
    }
    STDMETHODIMP put_Frozen(VARIANT_BOOL value) override {
        return Act([&](ComboGridControl& control, int col) {
            const flexgrid::Grid& grid = control.Entry().Model();
            return control.put_FrozenCols(
                FrozenColsWith(grid.FixedCols(), grid.FrozenCols(), col, value != VARIANT_FALSE));
        });
    }

  private:
    ~ColumnObject() override = default;

    ComboGridControl& Control() const { return columns_->Control(); }
    int Col() const {
        const int col = Control().Entry().Model().ColWithId(id_);
        if (col < 0) throw RunTimeError(errors::objectUnloaded, u"The column no longer exists");
        return col;
    }
    // Executes act(control, col), which returns an HRESULT; a listener may release the control meanwhile.
    template <class Body>
    HRESULT Act(Body body) {
        return Guard([&] {
            ComboGridControl& control = Control();
            const auto keep = control.HoldControl();
            return body(control, Col());
        });
    }
    // `opposite` is for properties that are true of the columns that a list does not have.
    template <class Type>
    HRESULT Read(Type* result, ColumnSetting setting, bool opposite) {
        return Give(result, [&] {
            EntryGrid& entry = Control().Entry();
            const int value = SettingOf(entry.Model(), entry.State(), Col(), setting);
            if constexpr (std::is_same_v<Type, VARIANT_BOOL>)
                return (value != 0) != opposite;
            else
                return value;
        });
    }
    template <class Type>
    HRESULT Write(Type value, ColumnSetting setting, bool opposite) {
        if constexpr (std::is_same_v<Type, VARIANT_BOOL>)
            return WriteNumber((value != VARIANT_FALSE) != opposite ? 1 : 0, setting);
        else
            return WriteNumber(static_cast<int>(value), setting);
    }
    HRESULT WriteNumber(int value, ColumnSetting setting) {
        return Act([&](ComboGridControl& control, int col) { return control.SetColumn(col, setting, value); });
    }

    ComPtr<ColumnsObject> columns_;
    std::uint32_t id_;
};

}  // namespace

int ColumnsObject::ColumnNamed(const VARIANT& index) const {
    const Variant place(index);
    if (place.Type() != VT_BSTR) {
        const auto col = place.ToLong();
        if (!col) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
        if (*col < 0 || *col >= Model().Cols())
            throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
        return static_cast<int>(*col);
    }
    const Text key = *place.ToText();
    for (const auto& [known, col] : RefreshColIndex(Model()).entries)
        if (EqualNoCase(known, key)) return col;
    throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
}

ComPtr<IGridColumn> ColumnsObject::Column(int col) {
    return MakeObject<ColumnObject>(ComPtr<ColumnsObject>(this), Model().IdOfCol(col));
}

ColumnsAutomation::ColumnsAutomation(ComboGridControl& control) : control_(control) {}

ColumnsAutomation::~ColumnsAutomation() {
    if (object_) object_->Detach();
}

IGridColumns* ColumnsAutomation::Get() {
    if (!object_) object_ = MakeObject<ColumnsObject>(control_);
    return object_.copy();
}

}  // namespace qvx::grid
