#!/usr/bin/env python3
"""Generates the Shift-JIS tables of the library from their UTF-8 source here:

  core/error_codes.h     named error codes of the listing side
  core/message_tables.cpp  English and Japanese message and warning tables,
                           and the glyphs that turn their Shift-JIS back to UTF-8
  core/robot_models.cpp  the built-in robot model rows and linear-axis rows

The library works in Shift-JIS, so every Japanese text is written as "\\x"
escapes. Run from anywhere: python3 scripts/gen_sjis_tables.py
"""
import os

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SAME = object()  # the Japanese table holds the English text

# Message rows in the order of the English table: code, name, English,
# Japanese (SAME: the English text; None: no Japanese row, the fallback
# applies).
MESSAGES = [
    (1376341, 'ASC_BAD_ATTR_DATA', 'Wrong attribute data', 'アトリビュートデータが正しくありません'),
    (102, 'ASC_DUP_POS', 'Duplicated Position data', '位置データの二重定義です'),
    (103, 'ASC_UNUSED_POS', 'Unused Position data', '未使用の位置データです'),
    (104, 'ASC_UNDEF_PALLET', 'Undefined pallet number', 'パレット番号が正しくありません'),
    (105, 'ASC_BAD_ROUTE_POS', 'Wrong route position', '経路点が正しくありません'),
    (107, 'ASC_OUT_OF_RANGE', 'Out of range', '範囲外の数値です'),
    (108, 'ASC_DUP_PAL_DATA', 'Duplicated Palletizing data', 'パレット番号の二重定義です'),
    (109, 'ASC_DUP_PATTERN', 'Duplicated pattern', 'パレタイジング積みパターンの二重定義です'),
    (110, 'ASC_BAD_PATTERN_COUNT', 'Wrong the number of patterns', 'パレタイジング積みパターンの数が正しくありません'),
    (111, 'ASC_BAD_ROUTE_TYPE', 'Wrong route position type', '経路点のタイプが正しくありません'),
    (112, 'ASC_BAD_ROUTE_NUMBER', 'Wrong route position number', '経路点の番号が正しくありません'),
    (113, 'ASC_BAD_BOTTOM_COUNT', 'Wrong the number of bottom positions', '積み点の数が正しくありません'),
    (114, 'ASC_CONFIG_ERROR', 'Configuration error', '形態エラーです'),
    (115, 'ASC_NO_MEMORY', 'Memory allocation error', 'メモリアロケーションエラーです'),
    (116, 'ASC_BAD_OPERATOR', 'Invalid operator', '使用できない演算子です'),
    (1376345, 'ASC_SYNTAX_ERROR', 'Syntax error in instruction', '文法エラーです'),
    (117, 'ASC_EXPECT_COMMA', 'Expecting a comma', "','が必要です"),
    (123, 'ASC_EXPECT_LBRACKET', "Expecting a '['", "'['が必要です"),
    (124, 'ASC_EXPECT_EQUAL', "Expecting a '='", "'='が必要です"),
    (126, 'ASC_EXPECT_RBRACKET', "Expecting a ']'", "']'が必要です"),
    (128, 'ASC_EXPECT_LPAREN', "Expecting a '('", "'('が必要です"),
    (129, 'ASC_EXPECT_RPAREN', "Expecting a ')'", "')'が必要です"),
    (134, 'ASC_EXPECT_SEMICOLON', "Expecting ';'", "';'が必要です"),
    (135, 'ASC_EXPECT_COLON', "Expecting ':'", "':'が必要です"),
    (118, 'ASC_BAD_BACKUP_OPTION', 'Invalid Backup option', SAME),
    (119, 'ASC_BAD_PRESSURE_OPTION', 'Invalid Pressure option', SAME),
    (120, 'ASC_BAD_SCHEDULE', 'Invalid Schedule number', 'スケジュール番号が正しくありません'),
    (121, 'ASC_BAD_ROBOT_CFG', 'Invalid data in robot configuration file, rerun cellconf program.', '設定データが正しくありません'),
    (122, 'ASC_NO_ROBOT_CFG', 'Could not open file robot configuration file. Please run cellconf program.', SAME),
    (125, 'ASC_BAD_EQUIPMENT', 'Invalid Equipment number', '装置番号が正しくありません'),
    (127, 'ASC_BACKUP_NOT_CONFIGURED', 'Backup option is not configured, use cellconf to reconfigure.', '設定データが正しくありません'),
    (130, 'ASC_EXPECT_BU', "Expecting 'BU'", SAME),
    (131, 'ASC_EXPECT_P', "Expecting 'P'", SAME),
    (132, 'ASC_EXPECT_S', "Expecting 'S'", SAME),
    (133, 'ASC_PRESSURE_NOT_CONFIGURED', 'Pressure option is not configured, use cellconf to reconfigure.', '設定データが正しくありません'),
    (136, 'ASC_SINGLE_GUN_COMMA', "Encountered a ','.  Equipment configured for single gun.", SAME),
    (137, 'ASC_SINGLE_GUN_PAREN', "Encountered a '('.  Equipment configured for single gun.", SAME),
    (138, 'ASC_DUAL_GUN_PAREN', "Expecting a '('.  Equipment configured for dual guns.", SAME),
    (139, 'ASC_NOT_SPOT_ROBOT', 'Robot not configured for PinchKit.  Run cellconf to reconfigure.', SAME),
    (1376347, 'ASC_BAD_PROG_SECTION', 'Invalid /PROG section', '/PROG でエラーです'),
    (1376348, 'ASC_BAD_SECTION', 'Invalid section encountered', '文法エラーです'),
    (1376342, 'ASC_POS_SYNTAX', 'Syntax error in position data', '位置データで文法エラーです'),
    (160, 'ASC_EXPECT_LINE_NUMBER', 'Expecting line number', '行番号が必要です'),
    (161, 'ASC_UNDEF_INSTRUCTION', 'Undefined instruction', '定義されていない命令です'),
    (140, 'ASC_NO_MACROS', 'No macros in robot configuration file.', 'マクロ設定エラー'),
    (141, 'ASC_BAD_MACRO_CFG', 'Syntax error in macro section of robot configuration file.', 'マクロ設定エラー'),
    (142, 'ASC_ROBOT_CFG_ERROR', 'Error in robot configuration file: rerun cellconf program.', 'ロボット設定エラー'),
    (143, 'ASC_NO_ATTR', 'No /ATTR section in file', '/ATTR でエラーです'),
    (144, 'ASC_NO_APPL', 'No /APPL section in file', '/APPL でエラーです'),
    (145, 'ASC_INCOMPLETE_APPL', 'Incomplete data in /APPL section', '/APPL に不完全なデータがあります'),
    (146, 'ASC_BAD_SUBTYPE', 'Program subtype in /PROG section, incorrect', 'プログラムサブタイプが正しくありません'),
    (147, 'ASC_FRAME_SCHEDULE_MISMATCH', "User frame and linetrack schedule don't match", SAME),
    (148, 'ASC_EXPECT_WC', 'Expecting WC', SAME),
    (149, 'ASC_EXPECT_OPEN_CLOSE_STAR', 'Expecting OPEN, CLOSE, or *', SAME),
    (150, 'ASC_EXPECT_OPEN_CLOSE', 'Expecting OPEN or CLOSE', SAME),
    (151, 'ASC_EXPECT_SV', 'Expecting SV', SAME),
    (152, 'ASC_EXPECT_SN', 'Expecting SN', SAME),
    (153, 'ASC_BAD_NUMBER', 'Invalid number', SAME),
    (154, 'ASC_BAD_PAINT_CFG', 'Invalid paint data in robot configuration file, rerun cellconf program.', SAME),
    (155, 'ASC_TRACKING_NOT_CONFIGURED', 'ASCII file configured for tracking, robot configuration file is not.', SAME),
    (156, 'ASC_BAD_ARC_CFG', 'Invalid arc weld data in robot configuration file, rerun cellconf program.', SAME),
    (162, 'ASC_CANNOT_READ_SOURCE', 'Cannot read ASCII source file.', 'ファイルを読めません'),
    (163, 'ASC_NO_EXT_AXIS_DATA', 'Did not find E1 or J7 in all positions in /POS section', '付加軸のデータがありません'),
    (164, 'ASC_POS_SECTION_PROBLEM', 'Problem encountered in /POS section', '/POS でエラーです'),
    (165, 'ASC_LAST_GUN_NOT_OFF', 'Last Gun statement not Gun=OFF.  Please fix ASCII source file.', SAME),
    (166, 'ASC_EXPECT_REAL', 'Expecting a real number.', '実数が必要です'),
    (167, 'ASC_EXPECT_INT', 'Expecting an integer.', '整数が必要です'),
    (168, 'ASC_EXPECT_MM', "Expecting 'mm'.", "'mm'が必要です"),
    (169, 'ASC_EXPECT_MM_SEC', "Expecting 'mm/sec'.", "'mm/sec'が必要です"),
    (170, 'ASC_EXPECT_SEC', "Expecting 'sec'.", "'sec'が必要です"),
    (171, 'ASC_EXPECT_DEG', "Expecting 'deg'.", "'deg'が必要です"),
    (172, 'ASC_BAD_BELL_POS', 'Incorrect Bell Position Number.', SAME),
    (173, 'ASC_UNUSED_BELL_POS', 'Unused bell position.', SAME),
    (176, 'ASC_UNUSED_ZONE', 'Unused zone.', SAME),
    (177, 'ASC_ZONE_ORDER', 'ZONE_START values are not increasing sequentially.', SAME),
    (178, 'ASC_SPRAY_1_ORDER', 'SPRAY_TOP_1 is not >= SPRAY_BOTTOM_1', SAME),
    (179, 'ASC_SPRAY_2_ORDER', 'SPRAY_TOP_2 is not >= SPRAY_BOTTOM_2', SAME),
    (180, 'ASC_BAD_AXES_CFG', 'Error in robot configuration file: invalid numberof axes', SAME),
    (181, 'ASC_BAD_EXT_AXES_CFG', 'Error in robot configuration file: invalid number of extended axes', SAME),
    (182, 'ASC_UNSUPPORTED_ROBOT', 'Error in robot configuration file: unsupported robot type', 'サポートしていないロボットタイプです'),
    (183, 'ASC_EXPECT_INT_OR_REG', 'Expecting integer or Register.', '整数かレジスタが必要です'),
    (184, 'ASC_POS_NOT_DEFINED', 'Position not defined in /POS section', '位置データが定義されていません'),
    (174, 'ASC_BLANK_MESSAGE', ' ', SAME),
    (159, 'ASC_BAD_CHAR', 'Invalid character', '使用できない文字が含まれています'),
    (185, 'ASC_BAD_GROUP', 'Invalid group number', 'グループ番号が正しくありません'),
    (188, 'ASC_BAD_AND_OR', 'Invalid combination of AND/OR.', 'ｶﾂとﾏﾀﾊが一緒に使用されています'),
    (189, 'ASC_BAD_OPERATOR_MIX', 'Invalid combination of operators.', '同時に使用できない演算子です'),
    (190, 'ASC_TOO_MANY_AND_OR', 'Too many AND/OR operator.', 'ｶﾂ、ﾏﾀﾊの数が多すぎます'),
    (191, 'ASC_TOO_MANY_ARITH', 'Too many arithmethic operator.', '演算子の数が多すぎます'),
    (192, 'ASC_CS_WITHOUT_CD', 'CS without CD.', 'ｺｰﾅ指定がないのにﾜﾘｱｲが使用されています'),
    (193, 'ASC_COND_NO_GROUP', 'When sub type is Cond, motion group is not available.', 'サブタイプがｼﾞｮｳﾀｲのとき、動作グループは指定できません'),
    (186, 'ASC_BAD_BELL_ZONE', 'Incorrect Bell Zone Number.', None),
    (187, 'ASC_BAD_BELL_TRIGGER', 'Incorrect Bell Trigger Number.', None),
]

# Codes that have a name but no message row.
EXTRA_NAMES = [
    (1376344, 'ASC_SYNTAX_ERROR2', 'syntax error in data of the palletizing and application sections'),
]

FALLBACK_EN = 'Syntax Error'
FALLBACK_JA = '文法エラーです'

# Warning vocabulary of report_warning; nothing prints these.
WARNINGS = [
    (100, 'This pallet register is used by another palletizing statement',
     'このパレットレジスタは他のパレタイジング命令でも使用されています'),
    (101, 'Undefined pallet number', '未定義のパレット番号を使用しています'),
    (102, 'Duplicated label', 'ラベルの二重定義です'),
    (103, 'Unused Position data', '未使用の位置データです'),
    (104, 'Set task priority to 50', '優先度を50に設定しました'),
]

# Robot model families. Letters: which of F/N, L/R, U/D, T/B the CONFIG
# of a Cartesian position holds; turns: the three turn fields (0 none,
# 1 editable, 2 shown but always 0); defaults: the letters that are on
# when a position gives none (F, L, U, T); linear: the robot's linear axes.
FAMILIES = {
    'GA5': dict(en='General-purpose 5-axis arm', ja='汎用5軸ロボット', axes=5,
                has='..UT', turns=(0, 0, 1), defaults='..UT', linear=''),
    'GA6': dict(en='General-purpose 6-axis arm', ja='汎用6軸ロボット', axes=6,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'GA7': dict(en='General-purpose 7-axis arm', ja='汎用7軸ロボット', axes=7,
                has='FLUT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'AW6': dict(en='Arc welding 6-axis arm', ja='アーク溶接6軸ロボット', axes=6,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'SW6': dict(en='Spot welding 6-axis arm', ja='スポット溶接6軸ロボット', axes=6,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'PT6': dict(en='Painting 6-axis arm', ja='塗装6軸ロボット', axes=6,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'PT7': dict(en='Painting 7-axis arm', ja='塗装7軸ロボット', axes=7,
                has='FLUT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'PL4': dict(en='Palletizing 4-axis arm', ja='パレタイジング4軸ロボット', axes=4,
                has='..UT', turns=(0, 0, 1), defaults='..UT', linear=''),
    'PL5': dict(en='Palletizing 5-axis arm', ja='パレタイジング5軸ロボット', axes=5,
                has='..UT', turns=(0, 1, 1), defaults='..UT', linear=''),
    'SC4': dict(en='SCARA 4-axis arm', ja='スカラ4軸ロボット', axes=4,
                has='.L..', turns=(0, 0, 1), defaults='.L..', linear='..L'),
    'DL4': dict(en='Parallel-link 4-axis arm', ja='パラレルリンク4軸ロボット', axes=4,
                has='....', turns=(0, 0, 2), defaults='....', linear=''),
    'CR6': dict(en='Clean-room 6-axis arm', ja='クリーンルーム6軸ロボット', axes=6,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'CO6': dict(en='Collaborative 6-axis arm', ja='協働6軸ロボット', axes=6,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'CO7': dict(en='Collaborative 7-axis arm', ja='協働7軸ロボット', axes=7,
                has='FLUT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'TR7': dict(en='6-axis arm on a rail', ja='走行軸付き6軸ロボット', axes=7,
                has='F.UT', turns=(1, 1, 1), defaults='..UT', linear='L'),
    'GT4': dict(en='Gantry, 3 linear and 1 rotary axes', ja='ガントリ 直動3軸＋回転1軸', axes=4,
                has='....', turns=(0, 0, 1), defaults='....', linear='LLL'),
    'GT5': dict(en='Gantry, 3 linear and 2 rotary axes', ja='ガントリ 直動3軸＋回転2軸', axes=5,
                has='...T', turns=(0, 0, 1), defaults='...T', linear='LLL'),
    'GT6': dict(en='Gantry, 3 linear and 3 rotary axes', ja='ガントリ 直動3軸＋回転3軸', axes=6,
                has='F...', turns=(0, 1, 1), defaults='....', linear='LLL'),
    'BENCH4': dict(en='Bench-top 4-axis arm', ja='卓上4軸ロボット', axes=4,
                   has='..UT', turns=(0, 0, 1), defaults='..UT', linear=''),
    'BENCH5': dict(en='Bench-top 5-axis arm', ja='卓上5軸ロボット', axes=5,
                   has='..UT', turns=(0, 0, 1), defaults='..UT', linear=''),
    'BENCH6': dict(en='Bench-top 6-axis arm', ja='卓上6軸ロボット', axes=6,
                   has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
    'WMINI': dict(en='Compact welding 6-axis arm', ja='小型溶接6軸ロボット', axes=6,
                  has='F.UT', turns=(1, 1, 1), defaults='..UT', linear=''),
}

# (key, family, reach in mm, payload in kg); reach 0 prints no size.
MODELS = [
    ('ARMLESS', None, 0, 0),
    ('AW6-1100-06', 'AW6', 1100, 6), ('AW6-1400-06', 'AW6', 1400, 6),
    ('AW6-1600-08', 'AW6', 1600, 8), ('AW6-1800-10', 'AW6', 1800, 10),
    ('AW6-2000-12', 'AW6', 2000, 12), ('AW6-2500-15', 'AW6', 2500, 15),
    ('AW6-3100-20', 'AW6', 3100, 20),
    ('BENCHARM4-0350', 'BENCH4', 350, 1), ('BENCHARM5-0450', 'BENCH5', 450, 2),
    ('BENCHARM6-0550', 'BENCH6', 550, 3),
    ('CO6-0900-05', 'CO6', 900, 5), ('CO6-1300-10', 'CO6', 1300, 10),
    ('CO6-1400-25', 'CO6', 1400, 25), ('CO6-1700-14', 'CO6', 1700, 14),
    ('CO7-0900-07', 'CO7', 900, 7),
    ('CR6-0700-05', 'CR6', 700, 5), ('CR6-0900-07', 'CR6', 900, 7),
    ('DL4-0800-03', 'DL4', 800, 3), ('DL4-1100-08', 'DL4', 1100, 8),
    ('DL4-1300-12', 'DL4', 1300, 12),
    ('GA5-0900-05', 'GA5', 900, 5), ('GA5-1400-10', 'GA5', 1400, 10),
    ('GA5-1800-20', 'GA5', 1800, 20),
    ('GA6-0500-03', 'GA6', 500, 3), ('GA6-0700-05', 'GA6', 700, 5),
    ('GA6-0900-07', 'GA6', 900, 7), ('GA6-1200-10', 'GA6', 1200, 10),
    ('GA6-1400-12', 'GA6', 1400, 12), ('GA6-1600-20', 'GA6', 1600, 20),
    ('GA6-1800-35', 'GA6', 1800, 35), ('GA6-2000-50', 'GA6', 2000, 50),
    ('GA6-2200-80', 'GA6', 2200, 80), ('GA6-2500-120', 'GA6', 2500, 120),
    ('GA6-2700-165', 'GA6', 2700, 165), ('GA6-3100-210', 'GA6', 3100, 210),
    ('GA6-3500-300', 'GA6', 3500, 300), ('GA6-4000-500', 'GA6', 4000, 500),
    ('GA7-0800-07', 'GA7', 800, 7), ('GA7-1000-10', 'GA7', 1000, 10),
    ('GA7-1300-15', 'GA7', 1300, 15), ('GA7-1600-20', 'GA7', 1600, 20),
    ('GT4-2000-20', 'GT4', 2000, 20), ('GT5-3000-50', 'GT5', 3000, 50),
    ('GT6-4000-100', 'GT6', 4000, 100),
    ('PL4-1600-50', 'PL4', 1600, 50), ('PL4-2400-100', 'PL4', 2400, 100),
    ('PL4-3100-180', 'PL4', 3100, 180), ('PL4-3200-300', 'PL4', 3200, 300),
    ('PL4-3200-500', 'PL4', 3200, 500), ('PL4-3600-700', 'PL4', 3600, 700),
    ('PL5-2600-160', 'PL5', 2600, 160), ('PL5-3100-250', 'PL5', 3100, 250),
    ('PT6-1300-05', 'PT6', 1300, 5), ('PT6-2000-10', 'PT6', 2000, 10),
    ('PT6-2800-15', 'PT6', 2800, 15), ('PT7-2800-15', 'PT7', 2800, 15),
    ('SC4-0400-03', 'SC4', 400, 3), ('SC4-0500-05', 'SC4', 500, 5),
    ('SC4-0600-10', 'SC4', 600, 10), ('SC4-0800-20', 'SC4', 800, 20),
    ('SC4-1000-20', 'SC4', 1000, 20),
    ('SW6-2200-100', 'SW6', 2200, 100), ('SW6-2300-150', 'SW6', 2300, 150),
    ('SW6-2600-210', 'SW6', 2600, 210), ('SW6-2800-250', 'SW6', 2800, 250),
    ('SW6-3000-300', 'SW6', 3000, 300), ('SW6-3300-400', 'SW6', 3300, 400),
    ('TR7-1400-12', 'TR7', 1400, 12), ('TR7-2000-35', 'TR7', 2000, 35),
    ('WELDMINI6-0700', 'WMINI', 700, 4), ('WELDMINI6-1000', 'WMINI', 1000, 6),
]

ARMLESS = dict(en='No arm, free axes only', ja='ロボットなし 付加軸のみ', axes=0,
               has='....', turns=(0, 0, 0), defaults='....', linear='')

LINEAR_KEY_BYTES = 24  # a 32-byte row: key with its zero, seven flags


def sjis(text):
    return text.encode('shift_jis')


def c_string(data):
    """A C literal of a text (str: ASCII kept, every byte of any other
    character escaped) or of raw bytes (bytes above 0x7F escaped). The
    literal is split where a hex digit would lengthen an escape."""
    if isinstance(data, str):
        units = [(ch.encode('shift_jis'), ord(ch) >= 0x80) for ch in data]
    else:
        units = [(bytes([b]), b >= 0x80) for b in data]
    out = '"'
    prev_hex = False
    for raw, escape in units:
        if escape or raw[0] < 0x20:
            out += ''.join('\\x%02X' % b for b in raw)
            prev_hex = True
            continue
        ch = chr(raw[0])
        if prev_hex and ch in '0123456789abcdefABCDEF':
            out += '" "'
        prev_hex = False
        out += '\\' + ch if ch in '"\\' else ch
    return out + '"'


def header(what):
    return ('/*\n** %s\n** Generated by scripts/gen_sjis_tables.py from its UTF-8 source; do not\n'
            '** edit by hand. Japanese texts are Shift-JIS bytes.\n*/\n' % what)


def gen_error_codes():
    lines = [header('error_codes.h - the named error codes of the listing side.').rstrip('\n'),
             '#ifndef VZ_CORE_ERROR_CODES_H', '#define VZ_CORE_ERROR_CODES_H', '',
             '#include <cstdint>', '',
             '/* Codes from 1376000 up lose their upper half (0x150000) in the 16-bit',
             '   code word that a listing run delivers. */']
    for code, name, en, _ in MESSAGES:
        lines.append('constexpr int32_t %s = %d; /* %s */' % (name, code, en.replace('*/', '* /')))
    for code, name, meaning in EXTRA_NAMES:
        lines.append('constexpr int32_t %s = %d; /* %s; no message row */' % (name, code, meaning))
    lines += ['', '#endif', '']
    return '\n'.join(lines)


def message_rows(rows, japanese):
    out = []
    for row in rows:
        code, text = row[0], row[-1]
        out.append('    {%d, %s},' % (code, c_string(text)))
    out.append('    {0, nullptr},')
    return out


def glyph_table(texts):
    glyphs = {}
    for t in texts:
        for ch in t:
            b = sjis(ch)
            if len(b) == 2:
                glyphs[(b[0] << 8) | b[1]] = ch.encode('utf-8')
    out = []
    for code in sorted(glyphs):
        out.append('    {0x%04X, %s},' % (code, c_string(glyphs[code])))
    return out, len(glyphs)


def japanese_texts():
    texts = [FALLBACK_JA] + [w[2] for w in WARNINGS]
    texts += [ja for _, _, _, ja in MESSAGES if isinstance(ja, str)]
    texts += [f['ja'] for f in FAMILIES.values()] + [ARMLESS['ja'], 'リーチ', '可搬']
    return texts


def gen_message_tables():
    en_rows = [(code, en) for code, _, en, _ in MESSAGES]
    ja_rows = []
    for code, _, en, ja in MESSAGES:
        if ja is SAME:
            ja_rows.append((code, en))
        elif ja is not None:
            ja_rows.append((code, ja))
    glyphs, glyph_count = glyph_table(japanese_texts())
    lines = [header('message_tables.cpp - message texts in English and Japanese, the warning\n'
                    '** vocabulary, the fallback texts, and the glyphs of the Japanese tables.').rstrip('\n'),
             '#include "core/messages.h"', '',
             '/* %d rows; searched from the top, ends at code 0. */' % len(en_rows),
             'const message_row english_messages[] = {']
    lines += message_rows(en_rows, False)
    lines += ['};', '',
              '/* %d rows: the English table less the two bell rows. */' % len(ja_rows),
              'const message_row japanese_messages[] = {']
    lines += message_rows(ja_rows, True)
    lines += ['};', '', 'const message_row english_warnings[] = {']
    lines += message_rows([(c, en) for c, en, _ in WARNINGS], False)
    lines += ['};', '', 'const message_row japanese_warnings[] = {']
    lines += message_rows([(c, ja) for c, _, ja in WARNINGS], True)
    lines += ['};', '',
              'const char english_fallback[] = %s;' % c_string(FALLBACK_EN),
              'const char japanese_fallback[] = %s;' % c_string(FALLBACK_JA), '',
              '/* Double-byte characters of the Japanese texts and model names, by code. */',
              'const sjis_glyph sjis_glyphs[] = {']
    lines += glyphs
    lines += ['};', 'const size_t sjis_glyph_count = %d;' % glyph_count, '']
    return '\n'.join(lines)


def flag(letters, letter):
    return 1 if letter in letters else 0


def model_row(key, fam, reach, payload):
    f = ARMLESS if fam is None else FAMILIES[fam]
    en, ja = f['en'], f['ja']
    if reach:
        en = '%s %dmm %dkg' % (en, reach, payload)
        ja = '%s リーチ%dmm 可搬%dkg' % (ja, reach, payload)
    has = [flag(f['has'], c) for c in 'FLUT']
    dflt = [flag(f['defaults'], c) for c in 'FLUT']
    return ('    {%s, %s, %s, %d, {%d, %d, %d}, %d, %d, %d, %d, {0, 0, 0}, %d, %d, %d, %d},'
            % (c_string(key), c_string(ja), c_string(en),
               f['axes'], *f['turns'], *has, *dflt))


def gen_robot_models():
    keys = [m[0] for m in MODELS]
    assert len(MODELS) == 72, 'the deployment ships 72 models'
    assert keys == sorted(keys), 'rows stay in key order'
    assert len(set(keys)) == len(keys)
    lines = [header('robot_models.cpp - the built-in rows of the robot model table and of its\n'
                    '** linear-axis table.').rstrip('\n'),
             '#include "core/config.h"', '',
             '/* key, Japanese name, English name, axes, turns, has F L U T, default turns,',
             '   default F L U T. The rows behind the built-in ones are free for',
             '   addrobotconfig; the first row with an empty key ends the table. */',
             'robot_model robot_models[ROBOT_MODEL_CAPACITY] = {']
    lines += [model_row(*m) for m in MODELS]
    lines += ['};', 'const int32_t robot_models_builtin_count = %d;' % len(MODELS), '',
              '/* Which of a model\'s axes are linear, J1 first; ends at an empty key. */',
              'robot_linear_row robot_linear_axes[ROBOT_LINEAR_CAPACITY] = {']
    count = 0
    for key, fam, _, _ in MODELS:
        lin = (ARMLESS if fam is None else FAMILIES[fam])['linear']
        if 'L' not in lin:
            continue
        assert len(key) <= LINEAR_KEY_BYTES
        flags = [1 if i < len(lin) and lin[i] == 'L' else 0 for i in range(7)]
        lines.append('    {%s, {%s}},' % (c_string(key), ', '.join(map(str, flags))))
        count += 1
    lines += ['};', 'const int32_t robot_linear_builtin_count = %d;' % count, '']
    return '\n'.join(lines)


def write(rel, text):
    with open(os.path.join(ROOT, rel), 'w', encoding='ascii', newline='\n') as f:
        f.write(text)


if __name__ == '__main__':
    write('core/error_codes.h', gen_error_codes())
    write('core/message_tables.cpp', gen_message_tables())
    write('core/robot_models.cpp', gen_robot_models())
