// The flexible grid's enumerations. Hosts store these numbers in their forms, so they never change.
#pragma once

#include "common/checked_enum.h"

namespace qvx::flexgrid {

enum class GridAppearance { flat = 0, threeD = 1, last = threeD };
enum class GridBorder { none = 0, single = 1, last = single };
enum class GridLineStyle { none = 0, flat = 1, inset = 2, raised = 3, last = raised };
enum class GridFocusRect { none = 0, light = 1, heavy = 2, last = heavy };
enum class GridHighLight { never = 0, always = 1, withFocus = 2, last = withFocus };
enum class GridSelectionMode { free = 0, byRow = 1, byColumn = 2, last = byColumn };
enum class GridScrollBars { none = 0, horizontal = 1, vertical = 2, both = 3, last = both };
enum class GridResizing { none = 0, columns = 1, rows = 2, both = 3, last = both };
enum class GridFillStyle { single = 0, repeat = 1, last = repeat };
enum class GridTextStyle { flat = 0, raised = 1, inset = 2, raisedLight = 3, insetLight = 4, last = insetLight };
enum class GridMerge {
    never = 0,
    free = 1,
    restrictRows = 2,
    restrictColumns = 3,
    restrictBoth = 4,
    last = restrictBoth
};

enum class GridSort {
    none = 0,
    genericAscending = 1,
    genericDescending = 2,
    numericAscending = 3,
    numericDescending = 4,
    stringNoCaseAscending = 5,
    stringNoCaseDescending = 6,
    stringAscending = 7,
    stringDescending = 8,
    custom = 9,
    last = custom
};

// value / 3 is left, centre, right and value % 3 is top, centre, bottom.
enum class GridAlignment {
    leftTop = 0,
    leftCenter = 1,
    leftBottom = 2,
    centerTop = 3,
    centerCenter = 4,
    centerBottom = 5,
    rightTop = 6,
    rightCenter = 7,
    rightBottom = 8,
    general = 9,  // numbers right and centred, everything else left and centred
    last = general
};

}  // namespace qvx::flexgrid
