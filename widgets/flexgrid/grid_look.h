// The grid's properties that only affect its appearance and reactions: they are stored and listeners are notified, but
// no decisions are made here.
#pragma once

#include <memory>
#include <utility>

#include "common/ole_color.h"
#include "common/run_time_error.h"
#include "drawing/surface.h"
#include "widgets/flexgrid/enums.h"
#include "widgets/flexgrid/grid_listener.h"

namespace qvx::flexgrid {

class GridLook {
  public:
    virtual ~GridLook() = default;

    OleColor BackColor() const { return backColor_; }
    void SetBackColor(OleColor color) { Store(backColor_, color); }
    OleColor BackColorBkg() const { return backColorBkg_; }
    void SetBackColorBkg(OleColor color) { Store(backColorBkg_, color); }
    OleColor BackColorFixed() const { return backColorFixed_; }
    void SetBackColorFixed(OleColor color) { Store(backColorFixed_, color); }
    OleColor BackColorSel() const { return backColorSel_; }
    void SetBackColorSel(OleColor color) { Store(backColorSel_, color); }
    OleColor ForeColor() const { return foreColor_; }
    void SetForeColor(OleColor color) { Store(foreColor_, color); }
    OleColor ForeColorFixed() const { return foreColorFixed_; }
    void SetForeColorFixed(OleColor color) { Store(foreColorFixed_, color); }
    OleColor ForeColorSel() const { return foreColorSel_; }
    void SetForeColorSel(OleColor color) { Store(foreColorSel_, color); }
    OleColor GridColor() const { return gridColor_; }
    void SetGridColor(OleColor color) { Store(gridColor_, color); }
    OleColor GridColorFixed() const { return gridColorFixed_; }
    void SetGridColorFixed(OleColor color) { Store(gridColorFixed_, color); }

    GridAppearance Appearance() const { return appearance_; }
    void SetAppearance(GridAppearance value) { Store(appearance_, value); }
    GridBorder BorderStyle() const { return borderStyle_; }
    void SetBorderStyle(GridBorder value) { Store(borderStyle_, value); }
    GridLineStyle GridLines() const { return gridLines_; }
    void SetGridLines(GridLineStyle value) { Store(gridLines_, value); }
    GridLineStyle GridLinesFixed() const { return gridLinesFixed_; }
    void SetGridLinesFixed(GridLineStyle value) { Store(gridLinesFixed_, value); }
    // Pixels at 96 dots per inch, 1 to 10; 380 outside.
    int GridLineWidth() const { return gridLineWidth_; }
    void SetGridLineWidth(int width) {
        if (width < 1 || width > 10) {
            throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
        }
        Store(gridLineWidth_, width);
    }
    GridFocusRect FocusRect() const { return focusRect_; }
    void SetFocusRect(GridFocusRect value) { Store(focusRect_, value); }
    GridHighLight HighLight() const { return highLight_; }
    void SetHighLight(GridHighLight value) { Store(highLight_, value); }
    GridScrollBars ScrollBars() const { return scrollBars_; }
    void SetScrollBars(GridScrollBars value) { Store(scrollBars_, value); }
    GridResizing AllowUserResizing() const { return allowUserResizing_; }
    void SetAllowUserResizing(GridResizing value) { Store(allowUserResizing_, value); }
    // Whether writing Text and the Cell formats affects the cursor cell or the whole selection; Clip does not depend on
    // it.
    GridFillStyle FillStyle() const { return fillStyle_; }
    void SetFillStyle(GridFillStyle value) { Store(fillStyle_, value); }
    GridTextStyle TextStyle() const { return textStyle_; }
    void SetTextStyle(GridTextStyle value) { Store(textStyle_, value); }
    GridTextStyle TextStyleFixed() const { return textStyleFixed_; }
    void SetTextStyleFixed(GridTextStyle value) { Store(textStyleFixed_, value); }
    GridMerge MergeCells() const { return mergeCells_; }
    void SetMergeCells(GridMerge value) { Store(mergeCells_, value); }

    bool WordWrap() const { return wordWrap_; }
    void SetWordWrap(bool value) { Store(wordWrap_, value); }
    bool Redraw() const { return redraw_; }
    void SetRedraw(bool value) { Store(redraw_, value); }
    bool AllowBigSelection() const { return allowBigSelection_; }
    void SetAllowBigSelection(bool value) { Store(allowBigSelection_, value); }
    bool ScrollTrack() const { return scrollTrack_; }
    void SetScrollTrack(bool value) { Store(scrollTrack_, value); }
    bool RightToLeft() const { return rightToLeft_; }
    void SetRightToLeft(bool value) { Store(rightToLeft_, value); }
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool value) { Store(enabled_, value); }

  protected:
    virtual void LookChanged() = 0;

  private:
    template <class T>
    void Store(T& field, T value) {
        if (field != value) {
            field = std::move(value);
            LookChanged();
        }
    }

    OleColor backColor_ = colors::windowBackground;
    OleColor backColorBkg_ = colors::buttonFace;
    OleColor backColorFixed_ = colors::buttonFace;
    OleColor backColorSel_ = colors::highlight;
    OleColor foreColor_ = colors::windowText;
    OleColor foreColorFixed_ = colors::buttonText;
    OleColor foreColorSel_ = colors::highlightText;
    OleColor gridColor_ = 0xC0C0C0;
    OleColor gridColorFixed_ = 0;
    GridAppearance appearance_ = GridAppearance::threeD;
    GridBorder borderStyle_ = GridBorder::single;
    GridLineStyle gridLines_ = GridLineStyle::flat;
    GridLineStyle gridLinesFixed_ = GridLineStyle::inset;
    int gridLineWidth_ = 1;
    GridFocusRect focusRect_ = GridFocusRect::light;
    GridHighLight highLight_ = GridHighLight::always;
    GridScrollBars scrollBars_ = GridScrollBars::both;
    GridResizing allowUserResizing_ = GridResizing::none;
    GridFillStyle fillStyle_ = GridFillStyle::single;
    GridTextStyle textStyle_ = GridTextStyle::flat;
    GridTextStyle textStyleFixed_ = GridTextStyle::flat;
    GridMerge mergeCells_ = GridMerge::never;
    bool wordWrap_ = false;
    bool redraw_ = true;
    bool allowBigSelection_ = true;
    bool scrollTrack_ = false;
    bool rightToLeft_ = false;
    bool enabled_ = true;
};

}  // namespace qvx::flexgrid
