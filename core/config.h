/*
** config.h - the robot cell configuration: the robot model table, the
** per-group robot records, the macro table and the spot, arc and option
** settings, with their setters, the readers of robot.cfg, macro.cfg,
** spot.cfg and arc.cfg, and the built-in cell. All of it is module state
** that survives between runs; a run only reads it.
**
** Groups are numbered 1 to 5 in texts and calls; arrays are indexed by the
** group number less 1. Axes are indexed from 0 (J1) within a group, and
** extended axis e (0-based) of a group has the index num_rob_axes + e.
*/
#ifndef VZ_CORE_CONFIG_H
#define VZ_CORE_CONFIG_H

#include <cstddef>
#include <cstdint>
#include <cstdio>

constexpr int32_t MAX_GROUPS = 5;
constexpr int32_t MAX_GROUP_AXES = 9;
/* Rows of the model table, its end row included. */
constexpr int32_t ROBOT_MODEL_CAPACITY = 200;
/* addrobotconfig looks for a free row up to this row. */
constexpr int32_t ROBOT_MODEL_LAST_FREE_ROW = 198;
/* zdgetnumrobot gives up when no end row appears within this many rows. */
constexpr int32_t ROBOT_MODEL_SCAN_LIMIT = 1000;
/* Rows of the linear-axis table, its end row included. */
constexpr int32_t ROBOT_LINEAR_CAPACITY = 100;
constexpr int32_t ROBOT_LINEAR_FLAGS = 7;
constexpr size_t ROBOT_LINEAR_KEY_MAX = 24;
constexpr int32_t MACRO_CAPACITY = 260;
constexpr size_t MACRO_NAME_MAX = 16;
constexpr size_t GROUP_MODEL_TEXT = 100;
/* A quoted configuration line holds at most this many characters. */
constexpr size_t CFG_LINE_MAX = 1024;

/* One robot model. Turn columns: 0 no such field, 1 an editable one, other
   values a field shown but held as 0. Default letters: 1 when the letter
   (F, L, U, T rather than N, R, D, B) is on when a position gives none. */
struct robot_model {
    const char *key;
    const char *japanese_name;
    const char *english_name;
    int32_t axes;
    int32_t turn[3];
    int32_t has_f, has_l, has_u, has_t;
    int32_t default_turn[3];
    int32_t default_f, default_l, default_u, default_t;
};

/* Which axes of a model are linear (1) rather than rotary (0), J1 first. */
struct robot_linear_row {
    char key[ROBOT_LINEAR_KEY_MAX + 1];
    int8_t linear[ROBOT_LINEAR_FLAGS];
};
static_assert(sizeof(robot_linear_row) == 32, "a linear-axis row is 32 bytes");

/* The record of one group, reached as "$SCR_GRP". config_mask: bit 31 F/N
   exists, 30 L/R, 29 U/D, 28 T/B; bits 23-16 turn 3, 15-8 turn 2, 7-0
   turn 1, each as the model's turn column. */
struct scr_group {
    uint8_t num_axes;
    uint8_t num_rob_axes;
    uint32_t config_mask;
};

struct macro_row {
    char name[20];
    int32_t number;
};

/* Model table in key order; the first row with an empty key ends it. The
   built-in rows come first; rows behind them are added by addrobotconfig
   and live as long as the process. */
extern robot_model robot_models[ROBOT_MODEL_CAPACITY];
extern const int32_t robot_models_builtin_count;
extern robot_linear_row robot_linear_axes[ROBOT_LINEAR_CAPACITY];
extern const int32_t robot_linear_builtin_count;

extern scr_group scr_grp[MAX_GROUPS];
/* Model key of each group as configured. */
extern char group_model[MAX_GROUPS][GROUP_MODEL_TEXT];
/* Row of each group's model in robot_models; -1 before a model is set. */
extern int32_t group_model_row[MAX_GROUPS];
extern int32_t axis_is_linear[MAX_GROUPS][MAX_GROUP_AXES];
/* 1 when the model set last is a BENCHARM... or WELDMINI... model. */
extern int32_t bench_model;

/* Macro names and their numbers, looked up by exact name in row order. */
extern macro_row macro_table[MACRO_CAPACITY];
extern int32_t macro_count;

/* Spot welding: 1 servo gun, 0 air gun; the stroke and pressure options.
   The spot option counts as configured when spot_servo_gun is on. */
extern int32_t spot_servo_gun;
extern int32_t spot_stroke;
extern int32_t spot_pressure;

/* Arc welding: 1 TIG, 0 MIG or CO2; 1 CURRENT, 0 WIRE; set once a power
   of WIRE is seen and never cleared; 0 mm/sec, 1 cm/min, 2 IPM; the
   ASTIME option. */
extern int32_t arc_process;
extern int32_t arc_power;
extern int32_t arc_wire_mode;
extern int32_t arc_wire_unit;
extern int32_t arc_astime;
/* The arc printers and parsers speak of the same settings by these names. */
inline int32_t &arc_process_tig = arc_process;
inline int32_t &arc_power_current = arc_power;
inline int32_t &arc_power_wire = arc_wire_mode;
inline int32_t &arc_show_time = arc_astime;

extern int32_t opt_smartfollow;
extern int32_t opt_vision;
extern int32_t opt_dispense;
/* 0 in a fresh library, 5 after a clear. */
extern int32_t track_sensor_default;
extern int32_t dispense_default;

/* ---- model table (config_models.cpp) ---- */

/* Row of key by exact match, or -1. */
int32_t robot_model_find(const char *key);
/* Linear-axis row of key, or null. */
const robot_linear_row *robot_linear_find(const char *key);
/* Rows before the first empty key into *count (if not null); 0, or 1 when
   no end row lies within ROBOT_MODEL_SCAN_LIMIT rows. */
int32_t robot_model_count(uint16_t *count);
/* Copies the key and the English (language 1) or Japanese (0) name of a
   row, at most 511 bytes each; a row past the table gives empty texts. */
void robot_model_names(uint16_t row, int32_t language, char *key_out, char *name_out);
/* addrobotconfig: 1 row added, 0 no free row, no memory, or the
   linear-axis table full (the model row stays added then). */
int32_t robot_model_add(const char *key, const char *japanese_name, const char *english_name,
                        const char *axis_letters, int32_t turn1, int32_t turn2, int32_t turn3,
                        int32_t f, int32_t l, int32_t u, int32_t t);
/* Drops every added row and frees its texts: the built-in tables again. */
void robot_models_restore_builtin();

/* ---- state and setters (config_state.cpp, config_setters.cpp) ---- */

/* zdclearparam: spot settings, macro table, group_count and options
   cleared, track_sensor_default and dispense_default 5. Model rows, group
   records and arc settings stay. */
void config_clear();
/* zdsetparam: section ROBOT, MACRO, SPOT, ARC or PARAM, case-blind; 1 when
   the setter returned 0, else 0, also for an unknown section. */
int32_t config_set(const char *section, const char *key, const char *value);
/* The setters: 0 good, 1 refused. ROBOT: key "MODEL LETTERS", value the
   group number. MACRO: key the name, value its number. */
int32_t set_robot_param(const char *key, const char *value);
int32_t set_macro_param(const char *key, const char *value);
int32_t set_spot_param(const char *key, const char *value);
int32_t set_arc_param(const char *key, const char *value);
int32_t set_option_param(const char *key, const char *value);
/* Row of a macro name by exact match, or -1. */
int32_t macro_find(const char *name);
/* "$SCR_GRP": *out points to scr_grp; "$SCR": to group_count. Other names
   leave *out alone. program is "*SYSTEM*" and is not looked at. Returns 0. */
int32_t system_variable(const char *program, const char *name, int32_t, int32_t, void **out);
/* Record of group 1..5, or null. */
const scr_group *group_record(int32_t group);
/* The CONFIG a Cartesian position of group 1..5 starts from: the default
   turns of the group's model and the flag byte (bit 7 F, 6 L, 5 U, 4 T).
   Returns 1 (turns and flags 0) when the group has no model. */
int32_t group_default_config(int32_t group, int8_t turns[3], uint8_t *flags);
/* Decimal integer as atoi reads it, clamped to 32 bits; 0 for null. */
int32_t config_atoi(const char *text);
/* ASCII comparison without regard to case; null counts as "". */
bool config_same_word(const char *a, const char *b);

/* ---- configuration files (config_files.cpp) ---- */

/* A configuration text: an open file, or text in memory when file is null. */
struct cfg_source {
    FILE *file;
    const char *text;
    size_t size;
    size_t pos;
};

/* One line without its line end (LF or CR LF) into buf; characters beyond
   size - 1 are dropped. A last line without a line end counts. 1 when a
   line was read, 0 at the end. */
int32_t cfg_read_line(cfg_source *src, char *buf, size_t size);
/* One line of the form "text": the line less its first and last character
   (at most CFG_LINE_MAX characters are read); a line of fewer than two
   characters gives "". 1 when a line was read, 0 at the end. */
int32_t read_quoted_line(cfg_source *src, char *buf, size_t size);
/* The readers, each on one file's text. read_robot_cfg: 1 good, 0 not. */
int32_t read_macro_cfg(cfg_source *src);
int32_t read_spot_cfg(cfg_source *src);
/* The arc settings read_arc_cfg starts from, also when there is no file. */
void arc_cfg_defaults();
int32_t read_arc_cfg(cfg_source *src);
int32_t read_robot_cfg(cfg_source *src);
/* zdreadparam: clears, then reads macro.cfg, spot.cfg, arc.cfg, robot.cfg
   from directory (a trailing "/" or "\" is optional; null or "" is the
   current directory); returns what reading robot.cfg returned. */
int32_t config_read_dir(const char *directory);

/* ---- the built-in cell (config_builtin.cpp) ---- */

/* Text of a built-in file ("robot.cfg", "macro.cfg", "spot.cfg",
   "arc.cfg"), the same as config/default holds; null for another name. */
const char *config_builtin_text(const char *file_name);
/* Clears and loads the built-in cell as zdreadparam would load
   config/default; returns 1. */
int32_t config_load_builtin();
/* The cell a tool asked for: directory null or "" loads the built-in cell,
   else config_read_dir(directory). 1 good, 0 not. */
int32_t config_load(const char *directory);

#endif
