#pragma once

// libjpeg's headers need <cstdio> and do not include it.
#include <cstdio>

// clang-format off
#include <jpeglib.h>
#include <jerror.h>
// clang-format on
