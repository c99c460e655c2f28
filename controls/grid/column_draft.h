// The columns of a grid while somebody edits them as a whole, before the control is given the result: what a form keeps
// of columns is the format string and the lists that name columns by caption.
#pragma once

#include <vector>

#include "controls/grid/cell_formats.h"
#include "controls/grid/column_settings.h"

namespace qvx::grid {

// The alignments that a format string has.
enum class ColumnSide { general, left, center, right };

// The columns are those of a grid that shows them: the header, and an example of a row. Calls that change them raise
// the errors of the grid and of the lists, and then have changed nothing.
class ColumnDraft {
  public:
    static constexpr int widest = 30000;  // twips

    explicit ColumnDraft(flexgrid::Grid& grid);
    ~ColumnDraft() { grid_.ShowTexts(nullptr); }
    ColumnDraft(const ColumnDraft&) = delete;
    ColumnDraft& operator=(const ColumnDraft&) = delete;
    // The user's settings, in which the example is shown.
    void Show(const NumberSigns& signs, const DateSettings& dates) { formats_.Refresh(signs, dates); }
    // Starts with the columns that the grid has, and with what State has been given. The width is that of column 0,
    // which a form keeps apart from the format string.
    void Start(TextView formatString, int fixedCols, int firstWidth, int frozenCols = 0);

    int Count() const { return grid_.Cols(); }
    Text Caption(int col) const;
    // The width in twips that a column has while it is shown.
    int Width(int col) const;
    ColumnSide Side(int col) const;
    int Setting(int col, ColumnSetting setting) const { return SettingOf(grid_, state_, col, setting); }
    Text Field(int col) const;
    TextView Format(int col) const { return formats_.FormatOf(col); }
    bool Frozen(int col) const { return CanFreeze(col) && col < fixedCols_ + frozenCols_; }
    // Whether the column is not a fixed one.
    bool CanFreeze(int col) const { return col >= fixedCols_; }

    // Adds a column before another one, or at the end.
    void Insert(int col);
    // Adds a column with the same settings, but no field, after it.
    void Duplicate(int col);
    // Whether a column can be removed: the fixed ones and one more have to stay.
    bool CanRemove() const;
    void Remove(int col);
    void Move(int from, int to);
    // Characters that divide a format string are left out.
    void Rename(int col, TextView caption);
    // Column 0 has any width. That of another one follows from its caption, which gets spaces for it at its end, and is
    // the least that is not below the one wanted.
    void SetWidth(int col, int twips);
    void SetSide(int col, ColumnSide side);
    void Set(int col, ColumnSetting setting, int value);
    void SetField(int col, TextView field);
    void SetFormat(int col, TextView format);
    void SetFrozen(int col, bool frozen) { frozenCols_ = FrozenColsWith(fixedCols_, frozenCols_, col, frozen); }

    // What the control is to have. The format string is the control's own until it has to be another one.
    const Text& FormatString() const { return formatString_; }
    ControlState& State() { return state_; }
    int FrozenCols() const { return frozenCols_; }

  private:
    Text WrittenColumns() const;
    int NaturalWidth(int col) const;
    Text FreshCaption(TextView stem, int number) const;
    Text ExampleOf(int col) const;
    // Adds a column with the caption of that stem and the first free number from this one on.
    void Add(int col, TextView stem, int number);
    void Apply(const ChangedTexts& changes);
    // Shows the columns as the control will.
    void Refresh();

    flexgrid::Grid& grid_;
    ControlState state_;
    CellFormats formats_{grid_, state_};
    Text formatString_;
    Text rowCaptions_;  // of the format string, with the ";" before them
    int fixedCols_ = 0;
    int frozenCols_ = 0;
    bool changed_ = false;  // the format string
    // A form keeps width and alignment of column 0 besides the format string, and a control has both as they were last
    // set.
    struct {
        std::uint32_t id = 0;
        int width = 0;
        flexgrid::GridAlignment alignment{};
        flexgrid::GridAlignment written{};  // in the format string; `general` for none
    } first_;
};

}  // namespace qvx::grid
