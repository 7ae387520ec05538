#include "layout.h"
