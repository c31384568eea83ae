// The texts in which Exif data holds moments.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

/// Reads a moment in the form of Exif 2.3, 4.6.5: "2009:03:07 14:05:03".
///
/// @param sDate      date and time; blanks at the end, and what follows a NUL, play no part
/// @param sFraction  the digits behind the second's decimal point, as the tags "SubSecTime" hold them;
///                   anything else counts as none
/// @return the time since 1970 on the camera's clock, whose zone is unknown; nothing if the text is no
/// moment,
///         such as the blanks and zeros of a camera whose clock was never set
std::optional<std::chrono::microseconds> ParseExifTime(std::string_view sDate, std::string_view sFraction);
