// The contents of the property page of columns: a list of the columns, the settings of the current one beside it, and
// below them the header as the grid will show it.
#pragma once

#include <windows.h>

#include "controls/grid/column_draft.h"
#include "kit/page_window.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "win/fonts.h"

namespace qvx::grid {

class ColumnPageWindow final : public PageWindow, private flexgrid::GridWindowEvents {
  public:
    explicit ColumnPageWindow(PageOwner& owner);
    ~ColumnPageWindow() override;

    ColumnDraft& Draft() { return draft_; }
    // The grid below, which shows the draft.
    flexgrid::Grid& Strip() { return strip_.Model(); }

    void TakeFocus() const override;
    bool TranslateKey(MSG& message) override;
    void FinishEntry() override;

  protected:
    bool Build() override;
    void Layout() override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    std::shared_ptr<void> Hold() override { return Owner().Hold(); }
    void Click() override;

    HWND Item(int id) const { return GetDlgItem(Handle(), id); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageW(Item(id), message, wParam, lParam);
    }
    void OnCommand(int id, int code);
    void EnterCaption();
    // Executes a button, or takes what a field now has, and shows the result.
    void Change(int id);
    void Execute(int id);
    void Select(int col);
    void ShowList();
    void ShowColumn();

    flexgrid::FlexGridWindow strip_;
    ColumnDraft draft_{strip_.Model()};
    SharedFont shown_;
    int current_ = 0;
    int typed_ = 0;  // the field whose entry is not finished; 0 for none
    bool showing_ = false;
};

}  // namespace qvx::grid
