// Picture and label form a row or a column, in either order; everything else follows from that.
#include "Widgets/ImageButtonLayout.h"

#include <algorithm>

namespace LS::Widgets {

namespace {

/// One direction of the layout: the bare lengths of both parts and their margins.
struct Axis {
    int nPicture, nLabel, nPictureMargin, nLabelMargin;
};

Axis AxisX(const ImageButtonParts& parts)
{
    return {parts.picture.x, parts.label.x, parts.pictureMargin.x, parts.labelMargin.x};
}

Axis AxisY(const ImageButtonParts& parts)
{
    return {parts.picture.y, parts.label.y, parts.pictureMargin.y, parts.labelMargin.y};
}

bool IsRow(LabelPlace place)
{
    return place == LabelPlace::Left || place == LabelPlace::Right;
}

bool IsLabelFirst(LabelPlace place)
{
    return place == LabelPlace::Left || place == LabelPlace::Top;
}

struct Offsets {
    int nPicture, nLabel;
};

/// Across the direction in which the parts follow each other.
Offsets Centred(const Axis& axis, int nSpace)
{
    return {(nSpace - axis.nPicture) / 2, (nSpace - axis.nLabel) / 2};
}

/// Along it.
Offsets InLine(const Axis& axis, int nSpace, bool bLabelFirst)
{
    const int nBetween = std::max(axis.nLabelMargin, axis.nPictureMargin);
    const int nLength = axis.nPicture + axis.nLabel + axis.nLabelMargin + axis.nPictureMargin + nBetween;
    const int nStart = (nSpace - nLength) / 2;
    if (bLabelFirst) {
        const int nLabel = nStart + axis.nLabelMargin;
        return {nLabel + axis.nLabel + nBetween, nLabel};
    }
    const int nPicture = nStart + axis.nPictureMargin;
    return {nPicture, nPicture + axis.nPicture + nBetween};
}

} // namespace

wxSize ImageButtonBestSize(const ImageButtonParts& parts)
{
    const wxSize picture = parts.HasPicture() ? parts.picture + 2 * parts.pictureMargin : wxSize(0, 0);
    const wxSize label = parts.HasLabel() ? parts.label + 2 * parts.labelMargin : wxSize(0, 0);
    wxSize shared(0, 0);
    if (parts.HasPicture() && parts.HasLabel()) {
        shared = parts.labelMargin;
        shared.DecTo(parts.pictureMargin);
    }
    if (IsRow(parts.place))
        return {label.x + picture.x - shared.x, std::max(label.y, picture.y)};
    return {std::max(label.x, picture.x), label.y + picture.y - shared.y};
}

ImageButtonPositions PlaceImageButton(const ImageButtonParts& parts, wxSize area)
{
    Offsets x = Centred(AxisX(parts), area.x);
    Offsets y = Centred(AxisY(parts), area.y);
    if (!parts.HasPicture())
        return {{0, 0}, {x.nLabel, y.nLabel}};
    if (!parts.HasLabel())
        return {{x.nPicture, y.nPicture}, {0, 0}};

    const bool bLabelFirst = IsLabelFirst(parts.place);
    if (IsRow(parts.place))
        x = InLine(AxisX(parts), area.x, bLabelFirst);
    else
        y = InLine(AxisY(parts), area.y, bLabelFirst);
    return {{x.nPicture, y.nPicture}, {x.nLabel, y.nLabel}};
}

} // namespace LS::Widgets
