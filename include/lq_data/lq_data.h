// All of the library and, where it is installed, of the host layer and its PLCopen reader; but for
// foreign_begin.h and foreign_end.h, which names.h explains.
#pragma once

#include "lq_data/cgtab.h"
#include "lq_data/cgtab_compiler.h"
#include "lq_data/containers.h"
#include "lq_data/frame.h"
#include "lq_data/handles.h"
#include "lq_data/hash_table.h"
#include "lq_data/line_bytes.h"
#include "lq_data/lines.h"
#include "lq_data/memory.h"
#include "lq_data/names.h"
#include "lq_data/pouh.h"
#include "lq_data/record_file.h"
#include "lq_data/records.h"
#include "lq_data/scanner.h"
#include "lq_data/string_escapes.h"
#include "lq_data/translate.h"
#include "lq_data/types.h"

#if __has_include("lq_data/host/base/streams.h")
#include "lq_data/code_page.h"
#include "lq_data/host/addrcheck/address_check.h"
#include "lq_data/host/base/streams.h"
#include "lq_data/host/framework/extension_module.h"
#include "lq_data/host/framework/string_table.h"
#include "lq_data/host/mdi/pou_ref.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/nearest_name.h"
#include "lq_data/host/text/report.h"
#include "lq_data/host/text/token_columns.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/useradapt/user_adapter.h"
#include "lq_data/host/words/words.h"
#endif
#if __has_include("lq_data/host/model/project.h")
#include "lq_data/host/check/check.h"
#include "lq_data/host/diff/diff.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/model/translation_source.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/symbols/symbols.h"
#include "lq_data/host/text_source/text_source.h"
#include "lq_data/host/uses/uses.h"
#endif
