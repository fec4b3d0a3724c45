// The categories that there are.
#include "vorda.h"

void regCmd_all()
{
    regCmd_cfg();
    regCmd_intl();
    regCmd_share();
    regCmd_stat();
    regCmd_vinfo();
}
