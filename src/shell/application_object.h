// How the application object makes itself known to TheApp(). Only its constructor and destructor call this.
#pragma once

class ZarfWndApp;

// Null when the object ends.
void SetApplicationObject(ZarfWndApp* application);
