// The framework's double refuses what the framework would not stand: without that, it would prove nothing.
#include "client_test.h"

namespace quern {
namespace {

using testing::HasSubstr;

struct Contract : client_test {
  void* const drcontext = framework.drcontext();
  instr_t* where = nullptr;

  Contract() {
    append(word_nop);
    where = block.first;
  }

  // What the violation in `misuse` is; empty when there is none.
  static std::string violation(const std::function<void()>& misuse) {
    try {
      misuse();
    } catch (const contract_violation& broken) {
      return broken.what();
    }
    return "";
  }

  static opnd_t reg(reg_id_t number) { return opnd_create_reg(number); }
  static opnd_t field(reg_id_t base, int offset, opnd_size_t size) {
    return opnd_create_base_disp(base, DR_REG_NULL, 0, offset, size);
  }

  // An application's instruction, whose translation is set, at the place of insertion.
  instr_t* insert(instr_t* built) {
    instrlist_preinsert(&block, where, instr_set_translation(built, where->translation));
    return built;
  }
  instr_t* a_store() {
    return instr_create_1dst_1src(drcontext, OP_str, field(DR_REG_X27, 8, OPSZ_8), reg(DR_REG_X26));
  }
};

TEST_F(Contract, AnInstructionIsInOneListOnce) {
  instr_t* const store = insert(a_store());
  EXPECT_EQ(violation([&] { instrlist_preinsert(&block, where, store); }), "an instruction is inserted twice");
  EXPECT_THAT(violation([&] { instr_destroy(drcontext, store); }), HasSubstr("destroyed while it is in a list"));
  instrlist_t other;
  EXPECT_THAT(violation([&] { instrlist_remove(&other, store); }), HasSubstr("a list that it is not in"));
  instr_t* const second = instr_set_translation(a_store(), where->translation);
  EXPECT_THAT(violation([&] { instrlist_preinsert(&other, where, second); }), HasSubstr("before one of another list"));
}

TEST_F(Contract, ADestroyedInstructionIsUsedNoMore) {
  instr_t* const store = a_store();
  instr_destroy(drcontext, store);
  EXPECT_THAT(violation([&] { instr_destroy(drcontext, store); }), HasSubstr("or is destroyed"));
  EXPECT_THAT(violation([&] { instr_set_translation(store, where->translation); }), HasSubstr("or is destroyed"));
}

// The label of the start of emulation frees the record's instruction with itself.
TEST_F(Contract, TheInstructionOfAnEmulationRecordIsTheFrameworks) {
  emulated_instr_t record{sizeof record, where->translation, instr_create(drcontext)};
  drmgr_insert_emulation_start(drcontext, &block, where, &record);
  instr_t* const label = block.first;
  instr_destroy(drcontext, record.instr);
  instrlist_remove(&block, label);
  EXPECT_THAT(violation([&] { instr_destroy(drcontext, label); }), HasSubstr("or is destroyed"));
}

TEST_F(Contract, AnEmulationRecordHasItsSize) {
  emulated_instr_t record{sizeof record - 8, where->translation, instr_create(drcontext)};
  EXPECT_THAT(violation([&] { drmgr_insert_emulation_start(drcontext, &block, where, &record); }),
              HasSubstr("of another size"));
}

TEST_F(Contract, AnApplicationsInstructionNeedsATranslation) {
  EXPECT_EQ(violation([&] { instrlist_preinsert(&block, where, a_store()); }), "no translation");
}

TEST_F(Contract, SlotsAreInReachOfGeneratedCode) {
  for (const int number : {-1, 3}) {
    const auto slot = static_cast<dr_spill_slot_t>(number);
    for (const std::function<void()>& misuse : std::initializer_list<std::function<void()>>{
             [&] { dr_save_reg(drcontext, &block, where, DR_REG_X26, slot); },
             [&] { dr_restore_reg(drcontext, &block, where, DR_REG_X26, slot); },
             [&] { dr_read_saved_reg(drcontext, slot); }, [&] { dr_write_saved_reg(drcontext, slot, 0); }})
      EXPECT_EQ(violation(misuse), "a spill slot that generated code can't reach");
  }
}

TEST_F(Contract, TheFrameworksCodeUsesGeneralRegistersButTheStolenOne) {
  for (const reg_id_t number : {DR_REG_X28, DR_REG_XSP, DR_REG_XZR, DR_REG_W0, DR_REG_Q0, DR_REG_NZCV}) {
    for (const std::function<void()>& misuse : std::initializer_list<std::function<void()>>{
             [&] { dr_save_reg(drcontext, &block, where, number, SPILL_SLOT_1); },
             [&] { dr_restore_reg(drcontext, &block, where, number, SPILL_SLOT_1); },
             [&] { dr_insert_get_stolen_reg_value(drcontext, &block, where, number); },
             [&] { dr_insert_set_stolen_reg_value(drcontext, &block, where, number); },
             [&] { drmgr_insert_read_tls_field(drcontext, 5, &block, where, number); }})
      EXPECT_EQ(violation(misuse), "the framework can't use this register for its own code");
  }
}

TEST_F(Contract, AThreadIsAskedForItsOwnFieldOnly) {
  EXPECT_THAT(violation([&] { drmgr_get_tls_field(drcontext, 4); }), HasSubstr("not the client's"));
  EXPECT_THAT(violation([&] { drmgr_insert_read_tls_field(drcontext, 4, &block, where, DR_REG_X26); }),
              HasSubstr("not the client's"));
  EXPECT_THAT(violation([&] { drmgr_get_tls_field(&block, 5); }), HasSubstr("not this thread's"));
}

TEST_F(Contract, AnImmediateFitsItsSize) {
  EXPECT_EQ(violation([] { opnd_create_immed_int(0x100000000, OPSZ_4); }), "an immediate too wide");
  EXPECT_EQ(violation([] { opnd_create_immed_int(0xFFFFFFFF, OPSZ_4); }), "");
  EXPECT_EQ(violation([] { opnd_create_immed_int(0x100000000, OPSZ_8); }), "");
}

// Operands at the ends of what an instruction has room for, and beyond them.
TEST_F(Contract, AnInstructionHasAnEncoding) {
  const auto one = [&](opnd_t memory, reg_id_t data) {
    return instr_create_1dst_1src(drcontext, OP_str, memory, reg(data));
  };
  const auto two = [&](opnd_t memory, reg_id_t first, reg_id_t second) {
    return instr_create_1dst_2src(drcontext, OP_stp, memory, reg(first), reg(second));
  };
  const auto load_two = [&](reg_id_t first, reg_id_t second) {
    return instr_create_2dst_1src(drcontext, OP_ldp, reg(first), reg(second), field(DR_REG_X27, 0, OPSZ_16));
  };
  const auto system = [&](int opcode, reg_id_t to, reg_id_t from) {
    return instr_create_1dst_1src(drcontext, opcode, reg(to), reg(from));
  };
  const auto sum = [&](reg_id_t to, reg_id_t from, std::int64_t amount, opnd_t shift) {
    return instr_create_1dst_4src(drcontext, OP_add, reg(to), reg(from), opnd_create_immed_int(amount, OPSZ_8), shift,
                                  opnd_create_immed_int(0, OPSZ_8));
  };
  const opnd_t plain = opnd_create_immed_int(DR_SHIFT_LSL, OPSZ_8), lsl = opnd_add_flags(plain, DR_OPND_IS_SHIFT);
  const struct {
    const char* name;
    instr_t* instr;
    bool has_one;
  } cases[]{
      {"the last W field", one(field(DR_REG_X27, 16380, OPSZ_4), DR_REG_W0), true},
      {"behind the last W field", one(field(DR_REG_X27, 16384, OPSZ_4), DR_REG_W0), false},
      {"the last X field", one(field(DR_REG_X27, 32760, OPSZ_8), DR_REG_X0), true},
      {"behind the last X field", one(field(DR_REG_X27, 32768, OPSZ_8), DR_REG_X0), false},
      {"the last Q field", one(field(DR_REG_X27, 65520, OPSZ_16), DR_REG_Q0), true},
      {"behind the last Q field", one(field(DR_REG_X27, 65536, OPSZ_16), DR_REG_Q0), false},
      {"before the first field", one(field(DR_REG_X27, -8, OPSZ_8), DR_REG_X0), false},
      {"between two X fields", one(field(DR_REG_X27, 4, OPSZ_8), DR_REG_X0), false},
      {"between two Q fields", one(field(DR_REG_X27, 8, OPSZ_16), DR_REG_Q0), false},
      {"an X register in a W field", one(field(DR_REG_X27, 0, OPSZ_4), DR_REG_X0), false},
      {"SP as data", one(field(DR_REG_X27, 0, OPSZ_8), DR_REG_XSP), false},
      {"SP as base", one(field(DR_REG_XSP, 0, OPSZ_8), DR_REG_X0), true},
      {"XZR as base", one(field(DR_REG_XZR, 0, OPSZ_8), DR_REG_X0), false},
      {"a system register as data", one(field(DR_REG_X27, 0, OPSZ_8), DR_REG_NZCV), false},
      {"the last pair", two(field(DR_REG_X27, 504, OPSZ_16), DR_REG_X0, DR_REG_X3), true},
      {"behind the last pair", two(field(DR_REG_X27, 512, OPSZ_16), DR_REG_X0, DR_REG_X3), false},
      {"the first pair", two(field(DR_REG_X27, -512, OPSZ_16), DR_REG_X0, DR_REG_X3), true},
      {"before the first pair", two(field(DR_REG_X27, -520, OPSZ_16), DR_REG_X0, DR_REG_X3), false},
      {"a pair in one field", two(field(DR_REG_X27, 0, OPSZ_8), DR_REG_X0, DR_REG_X3), false},
      {"a pair of W registers", two(field(DR_REG_X27, 0, OPSZ_16), DR_REG_W0, DR_REG_W26), false},
      {"a load of two registers", load_two(DR_REG_X0, DR_REG_X3), true},
      {"a load of one register twice", load_two(DR_REG_X3, DR_REG_X3), false},
      {"a read of the flags", system(OP_mrs, DR_REG_X26, DR_REG_NZCV), true},
      {"a read of a general register as a system one", system(OP_mrs, DR_REG_X26, DR_REG_X0), false},
      {"a write of the flags from SP", system(OP_msr, DR_REG_NZCV, DR_REG_XSP), false},
      {"a copy of SP", sum(DR_REG_X26, DR_REG_XSP, 0, lsl), true},
      {"the largest amount", sum(DR_REG_X26, DR_REG_XSP, 4095, lsl), true},
      {"an amount too large", sum(DR_REG_X26, DR_REG_XSP, 4096, lsl), false},
      {"an amount below 0", sum(DR_REG_X26, DR_REG_XSP, -1, lsl), false},
      {"a shift that is not marked as one", sum(DR_REG_X26, DR_REG_XSP, 0, plain), false},
      {"an addition to XZR", sum(DR_REG_XZR, DR_REG_XSP, 0, lsl), false},
      {"SP in a pair", two(field(DR_REG_X27, 0, OPSZ_16), DR_REG_X0, DR_REG_XSP), false},
      {"an opcode that the client has no use for", system(OP_INVALID, DR_REG_X0, DR_REG_X3), false},
  };
  for (const auto& [name, instr, has_one] : cases) {
    const std::string broken = violation([&] { insert(instr); });
    EXPECT_THAT(broken, has_one ? testing::IsEmpty() : testing::Matcher<std::string>(HasSubstr("no encoding for: ")))
        << name;
  }
}

}  // namespace
}  // namespace quern
