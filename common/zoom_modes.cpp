#include "zoom_modes.h"

#include "public_method.h"

#include <frame/view/doc_view.h>

namespace {
enum DestMode { PlainZoom = 0, DestFitPage = 1, DestFitWidth = 2, DestFitHeight = 3, DestFitRect = 4 };
} // namespace

int PublicMethod::DestZoomMode(int viewZoomMode)
{
    switch (viewZoomMode) {
    case G_Preferences::FitWidth:
        return DestFitWidth;
    case G_Preferences::FitHeight:
        return DestFitHeight;
    case G_Preferences::FitPage:
        return DestFitPage;
    case G_Preferences::FitRect:
        return DestFitRect;
    default:
        return PlainZoom;
    }
}

ViewZoom ViewZoomOf(int destZoomMode)
{
    switch (destZoomMode) {
    case DestFitPage:
        return {G_Preferences::FitPage, false};
    case DestFitWidth:
        return {G_Preferences::FitWidth, false};
    case DestFitHeight:
        return {G_Preferences::FitHeight, false};
    case DestFitRect:
        return {G_Preferences::FitRect, true};
    default:
        return {G_Preferences::Custom, false};
    }
}
