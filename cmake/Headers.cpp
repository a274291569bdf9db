// What the precompiled headers of cmake/Zemo.cmake are compiled for; the file itself holds nothing.
