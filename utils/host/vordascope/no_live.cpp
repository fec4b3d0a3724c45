// The verbs of a vordascope that was built without its server.
#include "verbs.h"

namespace vordascope
{

namespace
{

int refuse()
{
    complain("this vordascope was built without its server; configuring it says what was missing, "
             "or VORDASCOPE_LIVE is OFF");
    return TROUBLE;
}

} // namespace

int live(const LiveOptions &)
{
    return refuse();
}

int mark(const MarkOptions &)
{
    return refuse();
}

} // namespace vordascope
