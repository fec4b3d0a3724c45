// Attribute texts: the form in which the extension settings of the DIP's modules are saved.
//
// One serializer per module, all with the same contract:
//
//   param  The module's settings. They are only read.
//   str    Where the text is delivered; its previous value is not read.
//
//   Returns 0 with a new, terminated text in *str, which the caller owns and releases with free().
//   Returns -1 when memory is exhausted, with *str nullptr and nothing allocated, or when `param`
//   is nullptr, with *str as it was and a debug message in the system log.
//
// A text is a section: a line with the module's name in brackets, then lines "key = value",
// comments that begin with ";" and blank lines, every line with its "\n". Values print as they are
// stored, none is checked; integers print signed when they have 32 bits. The serializers keep no
// state.
#pragma once

#include "dip_intl_types.h"

#include <cstdint>

int32_t dip_intl_get_crc_param(const DipIntlCrcParam *param, char **str);
int32_t dip_intl_get_lsc_param(const DipIntlLscParam *param, char **str);
int32_t dip_intl_get_ae_param(const DipIntlAeParam *param, char **str);
int32_t dip_intl_get_awb_param(const DipIntlAwbParam *param, char **str);
int32_t dip_intl_get_pta_param(const DipIntlPtaParam *param, char **str);
int32_t dip_intl_get_shp_param(const DipIntlShpParam *param, char **str);
int32_t dip_intl_get_hdr_param(const DipIntlHdrParam *param, char **str);
int32_t dip_intl_get_hdr_ae_param(const DipIntlHdrAeParam *param, char **str);
int32_t dip_intl_get_te_param(const DipIntlTeParam *param, char **str);
int32_t dip_intl_get_front_enh_param(const DipIntlFrontEnhParam *param, char **str);
int32_t dip_intl_get_enh_param(const DipIntlEnhParam *param, char **str);
int32_t dip_intl_get_fcs_param(const DipIntlFcsParam *param, char **str);
int32_t dip_intl_get_dhz_param(const DipIntlDhzParam *param, char **str);
int32_t dip_intl_get_iso_param(const DipIntlIsoParam *param, char **str);
int32_t dip_intl_get_stat_param(const DipIntlStatParam *param, char **str);
int32_t dip_intl_get_front_nr_param(const DipIntlFrontNrParam *param, char **str);
int32_t dip_intl_get_nr_param(const DipIntlNrParam *param, char **str);
int32_t dip_intl_get_front_me_param(const DipIntlMeParam *param, char **str);
int32_t dip_intl_get_me_param(const DipIntlMeParam *param, char **str);
int32_t dip_intl_get_daa_param(const DipIntlDaaParam *param, char **str);
int32_t dip_intl_get_dms_param(const DipIntlDmsParam *param, char **str);
int32_t dip_intl_get_bsp_dpc_param(const DipIntlBspDpcParam *param, char **str);
int32_t dip_intl_get_ctrl_param(const DipIntlCtrlParam *param, char **str);
int32_t dip_intl_get_trail_suppress_param(const DipIntlTrailSuppressParam *param, char **str);
int32_t dip_intl_get_regional_stat_param(const DipIntlRegionalStatParam *param, char **str);
