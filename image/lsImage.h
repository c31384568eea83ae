// The record of one row of the source list.
#pragma once

#include "Util/Object.h"

#include <cstdint>

#include <wx/string.h>

class wxImage;

/// A photograph of the series: its path, size and exposure. It holds no pixels. Made with `new` and held
/// through LS::Util::Handle<lsImage>.
class lsImage : public virtual LS::Util::Object {
public:
    /// @param nWidth, nHeight  in pixels; 0 where they aren't known yet
    explicit lsImage(const wxString& sPath, std::int32_t nWidth = 0, std::int32_t nHeight = 0);

    const wxString& GetPath() const { return path; }

    /// The row's number: the records' order is that of their numbers.
    std::int32_t GetRowId() const { return rowId; }
    void SetRowId(std::int32_t nRowId) { rowId = nRowId; }

    /// In pixels; from the Exif data until LoadPixels puts the decoded size there.
    std::int32_t GetWidth() const { return width; }
    void SetWidth(std::int32_t nWidth) { width = nWidth; }
    std::int32_t GetHeight() const { return height; }
    void SetHeight(std::int32_t nHeight) { height = nHeight; }

    /// Whether the photograph takes part in the merge.
    bool IsEnabled() const { return enabled; }
    void SetEnabled(bool bEnabled) { enabled = bEnabled; }

    /// The path of the source cache file, whether it exists or not; empty until it is set.
    const wxString& GetCacheFile() const { return cacheFile; }
    void SetCacheFile(const wxString& sCacheFile) { cacheFile = sCacheFile; }

    float GetExposureTime() const { return exposureTime; } ///< seconds
    void SetExposureTime(float fExposureTime) { exposureTime = fExposureTime; }

    float GetFNumber() const { return fNumber; }
    void SetFNumber(float fFNumber) { fNumber = fFNumber; }

    float GetExposureBias() const { return exposureBias; } ///< EV
    void SetExposureBias(float fExposureBias) { exposureBias = fExposureBias; }

    /// The pixels, from the cache, whose rules for the pointer and for failures hold. Sets width and height.
    /// @return null if the file can't be decoded; width and height then stay
    wxImage* LoadPixels();

private:
    wxString path;
    std::int32_t rowId = 0;
    std::int32_t width;
    std::int32_t height;
    bool enabled = true;
    wxString cacheFile;
    float exposureTime;
    float fNumber;
    float exposureBias;
};
