// The frame around a control's own property pages: a tab for each, OK, Cancel and Apply.
//
// The frame of some systems does not apply what has been entered on the pages.
#pragma once

#include <ocidl.h>

#include <vector>

#include "com/pointer.h"
#include "designer/editors/editor_dialog.h"
#include "host/class_source_object.h"

namespace qvx::host::designer {

class PropertyFrame final : public EditorDialog {
  public:
    // Pages of these classes on an object; those that cannot be made are left out. Throws RunTimeError with the reason
    // when none can be made. `owner` is only asked for its dots per inch.
    static std::unique_ptr<PropertyFrame> Make(HWND owner, const Text& title, IUnknown* object,
                                               const std::vector<CLSID>& pages, const ClassSource& classes);
    ~PropertyFrame() override;

  protected:
    void Build() override;
    void FollowResolution() override;
    void OnCommand(int id, int notification) override;
    bool Accept() override;
    bool TranslateKey(MSG& message) override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    class Site;
    class Holder;
    struct Page {
        ComPtr<IPropertyPage> page;
        ComPtr<Site> site;
        Text title;
        bool active = false;
        bool dirty = false;
    };

    PropertyFrame(Text title, Size inside, std::vector<Page> pages);
    // Where the pages are; pixels at 96 dots per inch.
    Rect Room() const;
    void Show(std::size_t index);
    void Hide();
    // Applies every changed page; stops at the first that refuses, and shows it.
    bool Apply();
    void OnStatus(const Site& site, DWORD flags);
    void UpdateApply();

    std::vector<Page> pages_;
    std::size_t current_ = 0;
    std::unique_ptr<Holder> holder_;
};

}  // namespace qvx::host::designer
