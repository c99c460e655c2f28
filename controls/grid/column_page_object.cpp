#include "controls/grid/column_page_object.h"

#include "com/bstr.h"
#include "com/late_bound.h"

namespace qvx::grid {
namespace {

constexpr PageLook look{L"Columns", {500, 330}};
constexpr wchar_t description[] = L"The columns of a grid";

HRESULT CreateColumnPage(REFIID iid, void** object) { return MakeObject<ColumnPage>()->QueryInterface(iid, object); }

struct ListProperty {
    Text ControlState::*list;
    HRESULT (STDMETHODCALLTYPE _ComboGrid::*get)(BSTR*);
    HRESULT (STDMETHODCALLTYPE _ComboGrid::*put)(BSTR);
};

#define QVX_LIST(Name, Field) \
    { &ControlState::Field, &_ComboGrid::get_##Name, &_ComboGrid::put_##Name }
constexpr ListProperty listProperties[] = {
    QVX_LIST(RequiredFields, requiredFields),
    QVX_LIST(NonFocusColumns, nonFocusColumns),
    QVX_LIST(InActiveColumns, inActiveColumns),
    QVX_LIST(ListColumns, listColumns),
    QVX_LIST(UnChangableColumns, unChangableColumns),
    QVX_LIST(ColumnsDataType, columnsDataType),
    QVX_LIST(CheckValueFor, checkValueFor),
    QVX_LIST(Footer, footer),
    QVX_LIST(ColumnsMaxLength, columnsMaxLength),
    QVX_LIST(ValidateColumns, validateColumns),
    QVX_LIST(BindFields, bindFields),
    QVX_LIST(ColumnFormats, columnFormats),
    // It gives the columns their widths, and comes last for that.
    QVX_LIST(InVisibleColumns, inVisibleColumns),
};
#undef QVX_LIST

}  // namespace

const CLSID CLSID_prpctlColumns{0x4DE5F517, 0x0402, 0x49F2, {0x93, 0xDB, 0xDE, 0xAC, 0x18, 0xCC, 0x28, 0x9F}};
const PageClass columnPageClass{&CLSID_prpctlColumns, description, &CreateColumnPage};

ColumnPage::ColumnPage() : PropertyPage(look), window_(*this) {}

bool ColumnPage::Take(IUnknown* control) {
    control_ = Query<_ComboGrid>(control);
    return control_ != nullptr;
}

void ColumnPage::Check(HRESULT result) const {
    if (FAILED(result)) throw ForeignError(result, control_.get(), __uuidof(_ComboGrid));
}

void ColumnPage::Fill() {
    ControlState& state = window_.Draft().State();
    flexgrid::Grid& strip = window_.Strip();
    const auto read = [&](HRESULT (STDMETHODCALLTYPE _ComboGrid::*get)(BSTR*)) {
        Bstr value;
        Check((control_.get()->*get)(value.put()));
        return value.ToText();
    };
    const auto number = [&](HRESULT (STDMETHODCALLTYPE _ComboGrid::*get)(long*)) {
        long value = 0;
        Check((control_.get()->*get)(&value));
        return static_cast<int>(value);
    };
    for (const ListProperty& property : listProperties) state.*property.list = read(property.get);
    state.dateFormat = read(&_ComboGrid::get_DateFormat);
    short small = 0;
    Check(control_->get_KeyColumn(&small));
    state.keyColumn = small;
    const int rows = number(&_ComboGrid::get_Rows);
    const int cols = number(&_ComboGrid::get_Cols);
    strip.SetCols(cols);
    for (int col = 0; col < cols; ++col) {
        Bstr caption;
        if (rows > 0) Check(control_->get_TextMatrix(0, col, caption.put()));
        Check(control_->get_ColAlignment(col, &small));
        strip.SetTextMatrix(0, col, caption.View());
        strip.SetColAlignment(col, static_cast<flexgrid::GridAlignment>(small));
    }
    long width = 0;
    if (cols > 0) Check(control_->get_ColWidth(0, &width));
    ComPtr<IDispatch> grid;
    Check(control_->Grid(grid.put()));
    strip.SetRightToLeft(LateMember(grid.get(), L"RightToLeft").Get(grid.get()).ToBool().value_or(false));
    window_.Draft().Start(read(&_ComboGrid::get_FormatString), number(&_ComboGrid::get_FixedCols),
                          static_cast<int>(width), number(&_ComboGrid::get_FrozenCols));
}

void ColumnPage::Store() {
    ColumnDraft& draft = window_.Draft();
    long cols = 0;
    Check(control_->get_Cols(&cols));
    // The format string removes no columns, and adds none for a single one without a caption.
    if (cols != draft.Count()) Check(control_->put_Cols(draft.Count()));
    const auto put = [&](const ListProperty& property, const Text& wanted) {
        Bstr text;
        Check((control_.get()->*property.get)(text.put()));
        if (text.View() != wanted) Check((control_.get()->*property.put)(Bstr(wanted).get()));
    };
    put({{}, &_ComboGrid::get_FormatString, &_ComboGrid::put_FormatString}, draft.FormatString());
    for (const ListProperty& property : listProperties) put(property, draft.State().*property.list);
    short key = 0;
    Check(control_->get_KeyColumn(&key));
    const auto wanted = static_cast<short>(draft.State().keyColumn);
    if (key != wanted) Check(control_->put_KeyColumn(wanted));
    long frozen = 0;
    Check(control_->get_FrozenCols(&frozen));
    if (frozen != draft.FrozenCols()) Check(control_->put_FrozenCols(draft.FrozenCols()));
    StoreLook();
}

void ColumnPage::StoreLook() {
    const flexgrid::Grid& strip = window_.Strip();
    for (int col = 0; col < window_.Draft().Count(); ++col) {
        long width = 0;
        short alignment = 0;
        Check(control_->get_ColWidth(col, &width));
        Check(control_->get_ColAlignment(col, &alignment));
        const long wanted = strip.ColWidth(col);
        // The width of another column is that of its caption, which is not quite the same at another resolution.
        const bool follows = col > 0 && wanted != 0 && width != 0 && !window_.Draft().Caption(col).empty();
        if (width != wanted && !follows) Check(control_->put_ColWidth(col, wanted));
        const auto side = static_cast<short>(strip.ColAlignment(col));
        if (alignment != side) Check(control_->put_ColAlignment(col, side));
    }
}

}  // namespace qvx::grid
