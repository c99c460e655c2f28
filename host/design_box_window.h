// A box with a word in it, which a form under design shows for a control without a window.
#pragma once

#include "host/form_control.h"
#include "win/window.h"

namespace qvx::host {

class DesignBox final : public Window {
  public:
    // `broken` is the look of a control that cannot be shown.
    bool Open(HWND parent, const RECT& bounds, Text word, bool broken);
    ~DesignBox() override { Destroy(); }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void Paint();

    Text word_;
    bool broken_ = false;
};

// A control that cannot be created or loaded. Its block is kept as it is, apart from its position.
class BrokenControl final : public FormControl {
  public:
    BrokenControl(HostForm& form, const Block& block, FormControl* container, Text reason);
    ~BrokenControl() override;

    const Text& Reason() const { return reason_; }
    HWND Window() const override { return box_.Handle(); }
    void Focus(const MSG*) override {}
    bool Enabled() const override { return true; }
    void SetEnabled(bool) override {}
    ComPtr<IDispatch> Inner() const override { return nullptr; }

  protected:
    bool AcceptsFocus() const override { return false; }
    void ApplyBounds(const RECT& pixels) override;
    void ApplyVisible(bool) override {}
    void SaveOwn(SavedProperties&) override {}
    std::vector<Text> KnownProperties() const override { return {}; }

  private:
    Text reason_;
    DesignBox box_;
};

}  // namespace qvx::host
