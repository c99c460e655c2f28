// The numbers by which hosts know the ComboGrid's events that have none of the system's.
#pragma once

namespace qvx::grid_event {

constexpr long beforeCellChange = 1;
constexpr long afterCellChange = 2;
constexpr long onError = 3;
constexpr long listChange = 4;
constexpr long listClick = 5;
constexpr long onDelete = 6;
constexpr long enterCell = 7;
constexpr long leaveCell = 8;
constexpr long bindProgress = 9;
constexpr long rowColChange = 10;
constexpr long selChange = 11;
constexpr long scroll = 12;

}  // namespace qvx::grid_event
