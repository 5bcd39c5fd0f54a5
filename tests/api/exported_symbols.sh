#!/bin/sh
# exported_symbols.sh LIBRARY: the shared library defines vexor_* and vexorl_* for others, and nothing else.
set -eu
symbols=$(nm -D --defined-only "$1" | awk '{print $NF}')
for wanted in vexorl_set_verbosity vexorl_version vexorl_enable_type_checker vexorl_mk_context vexorl_del_context \
    vexorl_inconsistent vexorl_read vexorl_set_output_file vexorl_get_last_error_message vexorl_enable_log_file; do
    echo "$symbols" | grep -qx "$wanted" || { echo "not exported: $wanted"; exit 1; }
done
if echo "$symbols" | grep -vE '^vexorl?_'; then
    echo "exported besides vexor_* and vexorl_*"
    exit 1
fi
