// The frame that is laid over a cell, and the combos in it: one for each list column, and one for free text.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <vector>

#include "common/text.h"
#include "widgets/combo/combo_object.h"
#include "widgets/combo/combo_window.h"
#include "win/window.h"

namespace qvx::grid {

class EditorFrame final : public Window {
  public:
    explicit EditorFrame(ComboListener& listener) : listener_(listener) {}
    ~EditorFrame() override;

    // Hidden, in a parent. Throws error 7 when the system refuses.
    void CreateIn(HWND parent);

    // Error 360 "Object already loaded" for an index that is there.
    void Load(int index);
    void Unload(int index);
    // Null when it is not loaded.
    ComboWindow* Find(int index);
    // With a reference for the caller; error 340 for an element that is not loaded.
    IDispatch* ObjectOf(int index);
    std::vector<int> Loaded() const;
    // The index of a combo in this frame.
    int IndexOf(const ComboWindow& combo) const;

    const Text& Tag() const { return tag_; }
    void SetTag(TextView tag) { tag_ = tag; }
    // In pixels of the parent.
    void MoveTo(const Rect& bounds);
    void Show(bool shown);
    bool Shown() const;
    // Draws everything in it now.
    void Paint();

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    struct Element {
        // The object lets go of the combo before that is destroyed.
        std::unique_ptr<ComboWindow> combo;
        std::unique_ptr<ComboAutomation> automation;
    };

    ComboListener& listener_;
    std::map<int, Element> elements_;
    Text tag_;
};

}  // namespace qvx::grid
