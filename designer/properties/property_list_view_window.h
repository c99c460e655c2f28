// The parts of the property list's window (the selector of objects, the tabs of the two orders, the rows and the help
// below), and writing the values into the objects.
#pragma once

#include <memory>
#include <vector>

#include "designer/properties/property_list_window.h"
#include "designer/properties/property_model_win32.h"
#include "designer/properties/property_rows_window.h"
#include "drawing/surface.h"
#include "win/dpi.h"
#include "win/fonts.h"

namespace qvx::host::designer {

class PropertyListWindow::View final : public PropertyRowsOwner {
  public:
    // Identifiers of its child windows, and the message that it posts to show why a value was refused.
    enum ChildId { selectorId = 1, tabsId, headerId };
    static constexpr UINT showRefusal = WM_APP + 1;

    explicit View(PropertyListWindow& window) : window_(window), rows_(*this) {}

    bool Create();
    void Show(std::vector<Subject> subjects, std::vector<Text> titles);
    void Refresh();
    bool SetValue(TextView name, const PropertyValue& value);
    bool SetPicture(TextView name, const Text& path);
    void SetOrder(PropertyOrder order);
    void GoTo(TextView name);
    const ListedProperties* Table() const { return model_ ? &model_->Table() : nullptr; }
    PropertyRowsWindow& Rows() { return rows_; }

    void Layout();
    void PaintHelp(Surface& surface) const;
    LRESULT OnNotify(const NMHDR& header);
    void OnSelect();
    void ShowRefusal();
    bool OnSplitter(Point at) const { return areas_.splitter.Contains(at); }
    void DragSplitter(int y);
    void AcquireFonts();

    bool EnterText(std::size_t row, const Text& typed) override;
    bool EnterValue(std::size_t row, const PropertyValue& value) override;
    void OpenDialog(std::size_t row) override;
    void ClearPicture(std::size_t row) override;
    void LineChanged() override { window_.Invalidate(areas_.help); }
    void DividerMoved() override;
    void LeaveByTab(bool forward) override { Leave(rows_.Handle(), forward); }

    bool dragging = false;  // of the splitter

  private:
    HWND AddChild(const wchar_t* className, DWORD style, int id) const;
    void Leave(HWND from, bool forward) const;
    void FillSelector(std::vector<Text> titles);
    void ReadValues(const std::shared_ptr<PropertyModel>& model);
    void Refuse(const PropertyInfo& info, const RunTimeError& error);
    template <class Write>
    bool Apply(std::size_t row, const Write& write);
    bool WritePicture(std::size_t row, const ComPtr<IPictureDisp>& picture);
    int Scaled(int pixels) const { return qvx::Scaled(pixels, window_.Handle()); }
    HWND Owner() const { return GetAncestor(window_.Handle(), GA_ROOT); }

    PropertyListWindow& window_;
    PropertyRowsWindow rows_;
    HWND selector_ = nullptr;
    HWND tabs_ = nullptr;
    HWND header_ = nullptr;
    std::vector<std::unique_ptr<WindowSubclass>> subclasses_;
    SharedFont font_;
    // Pixels of the window.
    struct {
        Rect selector;
        Rect tabs;
        Rect header;
        Rect rows;
        Rect splitter;
        Rect help;
    } areas_;
    int helpHeight_ = 58;  // pixels at 96 dots per inch
    std::shared_ptr<PropertyModel> model_;
    std::vector<Text> titles_;
    Text title_;
    Text refusal_;
    PropertyOrder order_ = PropertyOrder::alphabetic;
    unsigned shows_ = 0;
    bool settingHeader_ = false;
};

}  // namespace qvx::host::designer
