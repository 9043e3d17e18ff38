#include "notifications/NotificationCenter.h"

namespace vellumry {

NotificationCenter& NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

} // namespace vellumry
