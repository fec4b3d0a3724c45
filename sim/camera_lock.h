// Taking a path's lock as the camera's processes do.
#pragma once

#include "path_lock.h"

// Takes the lock, queueing for it while others hold it. path_unlock releases it.
void camera_lock(PathLock *lock);
