// The toolbox of the designer: a list of what can be placed, each with its picture.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <vector>

#include "host/class_source_object.h"
#include "win/fonts.h"
#include "win/window.h"

namespace qvx::host::designer {

struct Tool {
    Text className;  // empty for the pointer
    Text caption;
    Text tip;
    CLSID id{};        // of a component
    int picture = -1;  // in the toolbox's pictures, or -1
};

class ToolboxWindow final : public Window {
  public:
    ToolboxWindow();
    ~ToolboxWindow() override;

    bool Create(HWND parent, const Rect& bounds);
    // Lists the host's own classes, and those of the component server of a registered class, or of the loaded file.
    void Fill(const ClassSource& classes, const Text& registeredClass);
    const std::vector<Tool>& Tools() const { return tools_; }
    // The class to place next; empty for the pointer.
    Text Armed() const;
    void Disarm();
    HWND List() const { return list_; }

    std::function<void()> onArmed;
    // A double click or Enter places a control of the class at once.
    std::function<void(const Text& className)> onPlace;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    class ListKeys;

    void DrawItem(const DRAWITEMSTRUCT& draw);
    int AddPicture(const CLSID& id);
    void DrawPictures();
    void FollowResolution();

    std::vector<Tool> tools_;
    HWND list_ = nullptr;
    HIMAGELIST pictures_ = nullptr;  // at the resolution that font_ is made for
    SharedFont font_;
    std::unique_ptr<ListKeys> keys_;
};

}  // namespace qvx::host::designer
