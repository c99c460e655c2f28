// An editor over a grid's cells and a host program in one, for tests of edits and of pasting.
#pragma once

#include <functional>
#include <sstream>

#include "controls/grid/cell_edit.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {

// It writes down what happens to it, one line a call, and answers as the test likes.
class EditorHost {
  public:
    explicit EditorHost(flexgrid::Grid& grid) : grid_(grid) {}

    void MoveFrame(const EditorPlacement& p) {
        Note("frame ", p.frame.left, ",", p.frame.top, " ", p.frame.width, "x", p.frame.height);
    }
    void MoveCombo(const EditorPlacement& p) { Note("combo ", p.comboLeft, ",", p.comboTop, " ", p.comboWidth); }
    void BringComboToFront() { Note("front"); }
    void SetComboMaxLength(int length) { Note("most ", length); }
    void SetComboText(TextView text) {
        comboText = text;
        list.listIndex = -1;
        Note("text '", text, "'");
    }
    Text ComboText() const { return comboText; }
    void SetComboTag(TextView text) { comboTag = text; }
    Text ComboTag() const { return comboTag; }
    void ShowFrame(bool shown) {
        if (failOnShow && shown) throw RunTimeError(5, u"Invalid procedure call or argument");
        frameShown = shown;
        Note(shown ? "show" : "hide");
    }
    void SetFrameTag(TextView text) { frameTag = text; }
    Text FrameTag() const { return frameTag; }
    void DropDown() { Note("drop, cell '", grid_.Text(), "'"); }
    void FocusCombo() { Note("focus, cell '", grid_.Text(), "'"); }
    ListState List() const { return list; }
    CellBox Cell() const { return {960, 240, 1200, 255}; }
    DateSettings DateSettingsNow() const { return {ShortDateOrder::monthDayYear, 2024, u"/"}; }
    int ScrollBarPixels() const { return 17; }
    int TwipsPerPixelX() const { return 15; }

    bool Listens() const { return listens; }
    void BeforeCellChange(int row, int col, const Text& data, bool& cancel) {
        Note("before ", row, ",", col, " '", data, cancel ? "' flag" : "'");
        if (onBefore) onBefore(col, cancel);
    }
    void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) {
        Note("after ", row, ",", col, " '", oldData, "' '", newData, cancel ? "' flag" : "'");
        if (onAfter) onAfter(col, cancel);
    }
    void ImportReport(long line, const Text& column, const Text& text, TextView reason) {
        importReports +=
            std::to_string(line) + " " + Narrow(column) + " '" + Narrow(text) + "': " + Narrow(reason) + "\n";
    }
    void OnError(int number, TextView description, bool& response) {
        Note("error ", number, " ", description, response ? " flag" : "");
        response = reports;
    }
    void ReportError(int number, TextView) {
        reported = number;
        Note("report ", number);
    }

    std::string Take() { return std::exchange(log_, {}); }

    bool silent = false;  // writes nothing down, which needs memory
    std::string importReports;
    bool listens = true;
    bool failOnShow = false;
    bool reports = true;
    int reported = 0;
    bool frameShown = false;
    Text comboText, comboTag, frameTag;
    ListState list = ListOf({u"Pen", u"Pencil", u"Ink"});
    std::function<void(int col, bool&cancel)> onBefore, onAfter;

  private:
    template <class... Parts>
    void Note(const Parts&... parts) {
        if (silent) return;
        std::ostringstream line;
        const auto add = [&](const auto& part) {
            if constexpr (std::is_convertible_v<decltype(part), TextView>)
                line << Narrow(part);
            else
                line << part;
        };
        (add(parts), ...);
        log_ += line.str() + "\n";
    }

    flexgrid::Grid& grid_;
    std::string log_;
};

}  // namespace qvx::grid
