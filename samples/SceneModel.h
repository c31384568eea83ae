// The furnished room and the street before its window, as lists of objects.
//
// World coordinates in metres: x to the right, y up from the floor, z away from the camera. The room is
// 4.6 wide, 2.8 high and 6.4 deep; the camera stands near its front wall and looks along +z.
#pragma once

#include "samples/Shapes.h"

#include <vector>

namespace LS::Samples {

inline constexpr double kRoomWidth = 4.6;
inline constexpr double kRoomHeight = 2.8;
inline constexpr double kRoomFront = -1.0;
inline constexpr double kRoomBack = 5.4;

/// The window opening in the back wall, which is kWallDepth thick.
inline constexpr double kWindowLeft = 0.72;
inline constexpr double kWindowRight = 2.32;
inline constexpr double kWindowSill = 0.60;
inline constexpr double kWindowTop = 2.32;
inline constexpr double kWallDepth = 0.30;

/// The bare bulb over the table and the shaded one of the floor lamp.
inline constexpr Vec3 kPendant{2.625, 1.70, 2.55};
inline constexpr Vec3 kLampBulb{4.02, 1.50, 4.35};
inline constexpr double kShadeHeight = 0.28;

std::vector<Object> RoomObjects();
std::vector<Object> StreetObjects();

} // namespace LS::Samples
