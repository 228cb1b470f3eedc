// The one table of monitor names and their pictures, as the lists of the Home console (ImgListH3, 30
// pictures), the lists of the Administrator console (the same pictures, three names fewer) and its event grid
// (33 pictures: the four change codes, then pictures 2 to 30 of ImgListH3) number them. Pictures are numbered
// from 1; 0 is none.
#pragma once

#include <string_view>
#include <vector>

namespace zendrix::alerts {

inline constexpr int kImgListH3Count = 30;
inline constexpr int kGridPictureCount = 33;

// Pictures of ImgListH3 that are used by number.
inline constexpr int kPictureAgentLogRow = 17;
inline constexpr int kPictureIntrusion = 18;
inline constexpr int kPictureBlocked = 19;
inline constexpr int kPictureUiLogRow = 19;
inline constexpr int kPictureAllowed = 21;
inline constexpr int kPictureSuspicious = 22;
inline constexpr int kPictureNormal = 23;
inline constexpr int kPictureDetails = 30;

// Monitor name to picture of ImgListH3, not regarding case; the last picture for a name that is not in the
// table.
int GetImgNumH3(std::string_view monitor);
// The twin for the Administrator console's lists: "AI Monitor", "Community" and "Aggregation" have no entry
// there.
int AdminPicture(std::string_view monitor);
// The twin for the event grid, by column and cell text: the monitor in column 3, the change code in column 4.
int GridPicture(int column, std::string_view text);

// The names of the table in its order.
std::vector<std::string_view> MonitorNames();
// What a picture of ImgListH3 shows ("bug_red"), or empty.
std::string_view PictureTag(int picture);

}  // namespace zendrix::alerts
