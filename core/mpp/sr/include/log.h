// Log levels of the platform's modules and the one way to send a message to the system log.
#pragma once

#include <cstddef>
#include <cstdint>
#include <syslog.h>

// One level per module. A message of syslog severity s is sent when the level is greater than s.
struct LogConf {
    uint8_t dip_log;
    uint8_t enc_log;
    uint8_t is_log;
    uint8_t isp_log;
    uint8_t iva_log;
    uint8_t mpi_log;
    uint8_t osd_log;
    uint8_t rc_log;
    uint8_t rs_log;
    uint8_t senif_log;
    uint8_t sr_log;
    uint8_t vb_log;
    uint8_t vplat_log;
};
static_assert(sizeof(LogConf) == 13);
static_assert(offsetof(LogConf, sr_log) == 10);
static_assert(offsetof(LogConf, vplat_log) == 12);

// The levels in force: those kept in the shared region while it is mapped, which all processes of
// the platform share, otherwise a built-in set with every level 6.
extern const LogConf *g_log_level;

// Sends a message when the module's level (a member of LogConf) allows its severity. A macro,
// because the arguments of a message that is not sent must not be evaluated and the compiler must
// see each format.
#define MPP_LOG(module, severity, ...)                    \
    do {                                                  \
        if (g_log_level->module > (severity))             \
            syslog(LOG_LOCAL7 | (severity), __VA_ARGS__); \
    } while (0)
