/* dict/tmspl32_entry.c — the dictionary library's own translation unit. The
 * Dict functions live in the engine archive (dict/dict.cpp), which is linked
 * in whole; the version script exports them and hides everything else. */
typedef int tmspl32_translation_unit_is_not_empty;
