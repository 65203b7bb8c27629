// Which form each operand of a row takes: handlers read an operand's size from the field that its form puts it in.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "sve/decoder/decode_map.h"

namespace quern {
namespace {

const char* form_of(operand_kind kind, route way) {
  using enum operand_kind;
  switch (kind) {
    case z:
    case z_whole:
    case z_list: return "z";
    case z_sxtw:
    case z_uxtw: return "z32";
    case z_both: return "zdn";
    case v: return "v";
    case v_both: return "vdn";
    case pg_merging: return "pg/m";
    case pg_zeroing: return "pg/z";
    case pg: return "pg";
    case p:
    case p_whole: return "p";
    case p_both: return "pdn";
    case r: return "r";
    case r_both: return "rdn";
    case rsp: return "rsp";
    case imm_signed:
    case imm_vl: return "signed";
    case imm_multiplier: return way == route::library ? "field" : "plus1";
    case imm_shifted: return "shifted";
    case imm_shifted_narrow: return "cut";
    case imm_shifted_s: return "shifted_s";
    case imm_right_shift: return "right";
    case imm_logical: return "mask";
    case imm_fp_dup: return "fp3";
    case imm_fp: return "fp";
    case imm_fp_half_one:
    case imm_fp_half_two:
    case imm_fp_zero_one: return "fp1";
    default: return "field";
  }
}

// Whether the form carries the row's element size, or a size of its own.
bool has_size(const operand& op) {
  using enum operand_kind;
  switch (op.kind) {
    case z:
    case z_whole:
    case z_list:
    case z_both:
    case p:
    case p_whole:
    case p_both:
    case r:
    case rsp: return true;
    case r_both: return op.size >= 0;  // else W or X as the element fits
    default: return false;
  }
}

// "zdn.1@0, pg/m@10, z.1@5": each operand's form, size code, and lowest bit.
std::string forms_of(const decode_row& row) {
  std::string text;
  for (const operand& op : row.operands) {
    if (!text.empty()) text += ", ";
    text += form_of(op.kind, row.way);
    if (has_size(op)) text += '.', text += std::to_string(op.size_in(row.size));
    text += '@', text += std::to_string(std::countr_zero(op.mask));
  }
  return text;
}

struct form_case {
  std::string_view name, forms;
};

// One of each shape, in sizes that tell an element's code from a register's.
const form_case cases[] = {
    {"VecU16AddVVM", "zdn.1@0, pg/m@10, z.1@5"},
    {"VecF32AddVVM", "zdn.2@0, pg/m@10, z.2@5"},
    {"VecU16AddVVX", "z.1@0, z.1@5, z.1@16"},
    {"VecU64AndVVX", "z.3@0, z.3@5, z.3@16"},
    {"VecU64LEA4VV", "z.3@0, z.3@5, z.3@16"},
    {"VecS32CLoad1SIZ", "z.2@0, pg/z@10, rsp.3@5, signed@16"},
    {"VecU16CStore1SIZ", "z.1@0, pg@10, rsp.3@5, signed@16"},
    {"VecU32E3Load4SIZ", "z.2@0, pg/z@10, rsp.3@5, signed@16"},
    {"VecU64E4Store8SIZ", "z.3@0, pg@10, rsp.3@5, signed@16"},
    {"VecS64CLoad4LSSZ", "z.3@0, pg/z@10, rsp.3@5, r.3@16"},
    {"VecU8CStore1LSSZ", "z.0@0, pg@10, rsp.3@5, r.3@16"},
    {"VecU32Load2VSZ", "z.2@0, pg/z@10, z32@16, rsp.3@5"},
    {"VecU64Load2VSZ", "z.3@0, pg/z@10, z.3@16, rsp.3@5"},
    {"VecS64Load2XVSZ", "z.3@0, pg/z@10, z32@16, rsp.3@5"},
    {"VecU64Load8YVSZ", "z.3@0, pg/z@10, z32@16, rsp.3@5"},
    {"VecU64Load8SVZ", "z.3@0, pg/z@10, rsp.3@5, z.3@16"},
    {"VecU32Load4XSVZ", "z.2@0, pg/z@10, rsp.3@5, z32@16"},
    {"VecU64Store4VSZ", "z.3@0, pg@10, z.3@16, rsp.3@5"},
    {"VecU64Store4XVSZ", "z.3@0, pg@10, z32@16, rsp.3@5"},
    {"VecU64Store4SVZ", "z.3@0, pg@10, rsp.3@5, z.3@16"},
    {"VecU64Load1VIZ", "z.3@0, pg/z@10, z.3@5, field@16"},
    {"VecU32Store1VIZ", "z.2@0, pg@10, z.2@5, field@16"},
    {"VecS16LoadDup1SIZ", "z.1@0, pg/z@10, rsp.3@5, field@16"},
    {"VecU32RBitVM", "z.2@0, pg/m@10, z.2@5"},
    {"VecS16Extnd12VM", "z.1@0, pg/m@10, z.1@5"},
    {"VecU64_4FromDVM", "z.2@0, pg/m@10, z.3@5"},
    {"VecS64_4FromDVM", "z.2@0, pg/m@10, z.3@5"},
    {"VecD64ExtndFVM", "z.3@0, pg/m@10, z.2@5"},
    {"VecF64TruncDVM", "z.2@0, pg/m@10, z.3@5"},
    {"VecH64TruncDVM", "z.1@0, pg/m@10, z.3@5"},
    {"VecH32TruncFVM", "z.1@0, pg/m@10, z.2@5"},
    {"VecF16FromS8VM", "z.1@0, pg/m@10, z.3@5"},
    {"VecD64FromS4VM", "z.3@0, pg/m@10, z.2@5"},
    {"VecU16MovePrefix1VM", "z.1@0, pg/m@10, z.1@5"},
    {"VecU16MovePrefix1VZ", "z.1@0, pg/z@10, z.1@5"},
    {"VecU16AddReduceV", "v@0, pg@10, z.1@5"},
    {"VecH16LastBV", "v@0, pg@10, z.1@5"},
    {"VecU16LastBV", "r.1@0, pg@10, z.1@5"},
    {"VecU16CondXBSV", "rdn@0, pg@10, z.1@5"},
    {"VecH16CondXASV", "vdn@0, pg@10, z.1@5"},
    {"VecU16CondXASV", "rdn@0, pg@10, z.1@5"},
    {"VecS16CmpFlgEQVVZ", "p.1@0, pg/z@10, z.1@5, z.1@16"},
    {"VecS16CmpFlgEQVWZ", "p.1@0, pg/z@10, z.1@5, z.3@16"},
    {"VecD64CmpGTVVZ", "p.3@0, pg/z@10, z.3@5, z.3@16"},
    {"VecS16CmpFlgEQVIZ", "p.1@0, pg/z@10, z.1@5, signed@16"},
    {"VecU16CmpFlgGTVIZ", "p.1@0, pg/z@10, z.1@5, field@14"},
    {"VecF32CmpEQV0Z", "p.2@0, pg/z@10, z.2@5"},
    {"VecS16While4LTSS", "p.1@0, r.2@5, r.2@16"},
    {"VecU16While8LESS", "p.1@0, r.3@5, r.3@16"},
    {"VecS16MLAVVVM", "zdn.1@0, pg/m@10, z.1@5, z.1@16"},
    {"VecD64FMAVVVM", "zdn.3@0, pg/m@10, z.3@5, z.3@16"},
    {"VecS16MADDVVVM", "zdn.1@0, pg/m@10, z.1@16, z.1@5"},
    {"VecD64FMADDVVVM", "zdn.3@0, pg/m@10, z.3@5, z.3@16"},
    {"VecF32FCMLAVVVM", "zdn.2@0, pg/m@10, z.2@5, z.2@16, field@13"},
    {"VecF32AddVIM", "zdn.2@0, pg/m@10, fp1@5"},
    {"VecS16ShrVIM", "zdn.1@0, pg/m@10, right@5"},
    {"VecU16ShlVIM", "zdn.1@0, pg/m@10, field@5"},
    {"VecU16AddVIX", "zdn.1@0, shifted@5"},
    {"VecU16QAddVIX", "zdn.1@0, cut@5"},
    {"VecS16MulVIX", "zdn.1@0, signed@5"},
    {"VecS16MaxVIX", "zdn.1@0, signed@5"},
    {"VecU16MaxVIX", "zdn.1@0, field@5"},
    {"VecU64AndVIX", "zdn.3@0, mask@5"},
    {"VecU16IncrVLVI", "zdn.1@0, field@5, plus1@16"},
    {"VecU16QIncrVLVI", "zdn.1@0, field@5, field@16"},
    {"VecU16ShlVIX", "z.1@0, z.1@5, field@16"},
    {"VecU16ExtDupVI", "z.1@0, z.1@5, field@18"},
    {"VecU8SlideVI", "zdn.0@0, z.0@5, field@10"},
    {"VecS16DupI", "z.1@0, shifted_s@5"},
    {"VecF16DupI", "z.1@0, fp3@5"},
    {"VecS64DupMaskI", "z.3@0, mask@5"},
    {"VecS16DupIM", "z.1@0, pg/m@16, shifted_s@5"},
    {"VecS16DupIZ", "z.1@0, pg/z@16, shifted_s@5"},
    {"VecF16DupIM", "z.1@0, pg/m@16, fp@5"},
    {"VecU16DupS", "z.1@0, rsp.1@5"},
    {"VecU16DupSM", "z.1@0, pg/m@10, rsp.1@5"},
    {"VecH16DupSM", "z.1@0, pg/m@10, v@5"},
    {"VecU16InsertS", "zdn.1@0, r.1@5"},
    {"VecH16InsertS", "zdn.1@0, v@5"},
    {"VecS16IndexII", "z.1@0, signed@5, signed@16"},
    {"VecS16IndexIS", "z.1@0, signed@5, r.1@16"},
    {"VecS16IndexSI", "z.1@0, r.1@5, signed@16"},
    {"VecS16IndexSS", "z.1@0, r.1@5, r.1@16"},
    {"VecU16ReverseV", "z.1@0, z.1@5"},
    {"VecU16UnpackHiV", "z.1@0, z.0@5"},
    {"VecU32SpecialMoveV", "z.2@0, z.2@5"},
    {"VecU16IncrVLSI", "rdn.3@0, field@5, plus1@16"},
    {"VecU8QDecrVL4SI", "rdn.2@0, field@5, plus1@16"},
    {"VecU8QDecrVL8SI", "rdn.3@0, field@5, plus1@16"},
    {"VecU16CountVLSI", "r.3@0, field@5, field@16"},
    {"VecU16QIncrVL4SI", "rdn.2@0, field@5, field@16"},
    {"VecU16IncrSCountPS", "rdn.3@0, p.1@5"},
    {"VecU16QDecrSCount4PS", "rdn.2@0, p.1@5"},
    {"VecU16SCountP", "r.3@0, pg@10, p.1@5"},
    {"VecU16SelVV", "z.1@0, pg@10, z.1@5, z.1@16"},
    {"VecPAndPPZ", "p.0@0, pg/z@10, p.0@5, p.0@16"},
    {"VecPSelPP", "p.0@0, pg@10, p.0@5, p.0@16"},
    {"VecPBreakAPM", "p.0@0, pg/m@10, p.0@5"},
    {"VecPBreakAPZ", "p.0@0, pg/z@10, p.0@5"},
    {"VecPBreakNextPZ", "pdn.0@0, pg/z@10, p.0@5"},
    {"VecP16Uzp1PP", "p.1@0, p.1@5, p.1@16"},
    {"VecP16ReverseP", "p.1@0, p.1@5"},
    {"VecPUnpackHiP", "p.1@0, p.0@5"},
    {"VecP16GenNextP", "pdn.1@0, pg@5"},
    {"VecPActualP", "p.0@0, pg/z@5"},
    {"VecPSetFirstActiveP", "pdn.0@0, pg@5"},
    {"VecP16TrueI", "p.1@0, field@5"},
    {"VecPFalse", "p.0@0"},
    {"VecPReadFFSRP", "p.0@0"},
    {"VecPTestPZ", "pg@10, p.0@5"},
    {"VecPWriteFFSRP", "p.0@5"},
    {"VecPClearFFSR", ""},
    {"VecU64FillSI", "z.3@0, rsp.3@5, signed@10"},
    {"VecPFillSI", "p.0@0, rsp.3@5, signed@10"},
    {"VecS64AddVLX", "rsp.3@0, rsp.3@16, signed@5"},
    {"VecS64VLX", "r.3@0, signed@5"},
    {"VecS32DotVVVX", "zdn.2@0, z.0@5, z.0@16"},
    {"VecS64DotVVVIX", "zdn.3@0, z.1@5, z.1@16, field@20"},
    {"VecF16FMAVVVIX", "zdn.1@0, z.1@5, z.1@16, field@19"},
    {"VecF32FCMLAVVVIX", "zdn.2@0, z.2@5, z.2@16, field@10, field@20"},
    {"VecU32CTermEQ", "r.2@5, r.2@16"},
    {"VecD64TRIMADDVVI", "zdn.3@0, z.3@5, field@16"},
};

TEST(OperandForms, AreThoseTheRoutineReads) {
  std::map<std::string_view, const decode_row*> by_name;
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows) by_name[row.name.view()] = &row;
  for (const form_case& c : cases) {
    ASSERT_TRUE(by_name.contains(c.name)) << c.name;
    EXPECT_EQ(forms_of(*by_name[c.name]), c.forms) << c.name;
  }
}

}  // namespace
}  // namespace quern
