#pragma once

// A destination's zoom mode as the view understands it. The way back is PublicMethod::DestZoomMode.
struct ViewZoom
{
    int mode;           // a G_Preferences::ZoomMode
    bool fitsRectangle; // the destination's rectangle is to fill the view
};
ViewZoom ViewZoomOf(int destZoomMode);
