// Versions of macOS mean nothing here.
#pragma once

#define API_AVAILABLE(...)
