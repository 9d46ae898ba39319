// Every complaint, provoked by an effect that commits the fault.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "headless/fakes/fake_effect.h"

namespace vitrell::headless {
namespace {

using fakes::Acquire;
using fakes::Behaviour;
using fakes::Command;
using fakes::HostOf;
using testing::ElementsAre;

std::vector<std::string> ComplaintsAbout(Behaviour render, bool deep = false) {
  const auto host = HostOf(std::move(render));
  WorldBuffer input(4, 3, deep, {.rowPadding = 4}), output(4, 3, deep, {.rowPadding = 16});
  WorldBuffer custom(2, 2, deep);
  input.FillNoise(1);
  custom.FillNoise(2);
  return host->Render(input, output, &custom).complaints;
}

std::byte* RowEnd(const PF_LayerDef& world, A_long y, A_long pixelBytes) {
  return static_cast<std::byte*>(world.data) + y * world.rowbytes + world.width * pixelBytes;
}

PF_LayerDef NewWorld(const Command& command) {
  PF_LayerDef world{};
  command.in->utils->new_world(command.Ref(), 4, 3, 0, &world);
  return world;
}

TEST(ComplaintsTest, NothingToComplainAbout) {
  EXPECT_THAT(ComplaintsAbout([](const Command&) { return PF_Err_NONE; }), ElementsAre());
  // The input's extent hint is the one thing that an effect may write.
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                command.Input().extent_hint.left = 1;
                return PF_Err_NONE;
              }),
              ElementsAre());
}

TEST(ComplaintsTest, SuitesKeptOrReleasedTwice) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                Acquire<void>(command, kPFAnsiSuite, 1);
                Acquire<void>(command, kPFWorldSuite, 2);
                Acquire<void>(command, kPFWorldSuite, 2);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect did not release the suite \"PF ANSI Suite\" "
                          "version 1.",
                          "During RENDER the effect did not release the suite \"PF World Suite\" "
                          "version 2 (2 times)."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                Acquire<void>(command, kPFAnsiSuite, 1);
                command.in->pica_basicP->ReleaseSuite(kPFAnsiSuite, 1);
                command.in->pica_basicP->ReleaseSuite(kPFAnsiSuite, 1);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect released the suite \"PF ANSI Suite\" version "
                          "1, which it does not hold."));
}

TEST(ComplaintsTest, ParametersNotCheckedInOrNeverOut) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                PF_ParamDef param{};
                command.in->inter.checkout_param(command.Ref(), 3, 0, 1, 1, &param);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect did not check in parameter 3."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                PF_ParamDef param{};
                command.in->inter.checkin_param(command.Ref(), &param);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect checked in a parameter record that was not "
                          "checked out."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                command.in->inter.checkout_param(command.Ref(), -1, 0, 1, 1, nullptr);
                command.in->inter.checkout_param(command.Ref(), 3, 0, 1, 1, command.params[3]);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect called checkout_param with a negative index "
                          "or without a record to fill.",
                          "During RENDER the effect checked out parameter 3 into a record of the "
                          "host's own array."));
}

TEST(ComplaintsTest, WorldsKeptDisposedTwiceOrNotTheEffects) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                NewWorld(command);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect did not dispose of world1."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                PF_LayerDef world = NewWorld(command);
                command.in->utils->dispose_world(command.Ref(), &world);
                command.in->utils->dispose_world(command.Ref(), &world);
                command.in->utils->dispose_world(command.Ref(), command.output);
                PF_Pixel own[4] = {};
                PF_LayerDef foreign{};
                foreign.data = own;
                command.in->utils->dispose_world(command.Ref(), &foreign);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect disposed of a world a second time.",
                          "During RENDER the effect disposed of the output world, which is the "
                          "host's.",
                          "During RENDER the effect disposed of a world that the host did not "
                          "make."));
}

TEST(ComplaintsTest, WritesOutsideWorlds) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                *RowEnd(*command.output, 1, 4) ^= std::byte{1};
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect wrote outside the output world. The byte 1 of "
                          "the padding behind row 1 was overwritten."));
  EXPECT_THAT(ComplaintsAbout(
                  [](const Command& command) {
                    PF_LayerDef world = NewWorld(command);
                    *(static_cast<std::byte*>(world.data) - 1) ^= std::byte{1};
                    command.in->utils->dispose_world(command.Ref(), &world);
                    return PF_Err_NONE;
                  },
                  true),
              ElementsAre("During RENDER the effect wrote outside world1. The byte 1 before the "
                          "first pixel was overwritten."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                const PF_LayerDef world = NewWorld(command);
                *RowEnd(world, 2, 4) ^= std::byte{1};
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect did not dispose of world1.",
                          "During RENDER the effect wrote outside world1. The byte 1 after the "
                          "last row was overwritten."));
}

TEST(ComplaintsTest, WritesToInputsAndRecords) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                static_cast<PF_Pixel*>(command.Input().data)->red ^= 1;
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect changed pixels of the input world, which it "
                          "may only read."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                PF_ParamDef param{};
                command.in->inter.checkout_param(command.Ref(), 3, 0, 1, 1, &param);
                static_cast<PF_Pixel*>(param.u.ld.data)->red ^= 1;
                command.in->inter.checkin_param(command.Ref(), &param);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect changed pixels of the custom world, which it "
                          "may only read."));
  EXPECT_THAT(
      ComplaintsAbout([](const Command& command) {
        command.params[1]->u.fs_d.value = 3;
        command.output->extent_hint.left = 1;
        command.in->quality = PF_Quality_LO;
        command.out->out_flags2 = 5;
        command.out->width = 5;
        return PF_Err_NONE;
      }),
      ElementsAre("During RENDER the effect wrote into the input record, which is the host's.",
                  "During RENDER the effect wrote the field width of the output record, which "
                  "this command must leave alone.",
                  "During RENDER the effect wrote the field out_flags2 of the output record, "
                  "which this command must leave alone.",
                  "During RENDER the effect changed the record of the output world.",
                  "During RENDER the effect changed the record of parameter 1."));
}

TEST(ComplaintsTest, CallsThatDoNotFit) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                const auto* deep = Acquire<PF_iterate16Suite1>(command, kPFIterate16Suite, 1);
                const PF_Err error = deep->iterate(
                    command.in, 0, 3, &command.Input(), nullptr, nullptr,
                    [](void*, A_long, A_long, PF_Pixel16*, PF_Pixel16*) -> PF_Err { return 0; },
                    command.output);
                EXPECT_EQ(error, PF_Err_BAD_CALLBACK_PARAM);
                command.in->pica_basicP->ReleaseSuite(kPFIterate16Suite, 1);
                const PF_Pixel16 color{};
                EXPECT_EQ(command.in->utils->fill16(command.Ref(), &color, nullptr, command.output),
                          PF_Err_BAD_CALLBACK_PARAM);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect called iterate16 from input to output, of "
                          "which at least one has another depth.",
                          "During RENDER the effect called fill16 on output, which has another "
                          "depth."));
  EXPECT_THAT(
      ComplaintsAbout([](const Command& command) {
        PF_LayerDef wrong = *command.output;
        wrong.rowbytes -= 4;
        PF_LayerDef empty{};
        EXPECT_EQ(command.in->utils->copy(command.Ref(), &wrong, command.output, nullptr, nullptr),
                  PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(
            command.in->utils->copy(command.Ref(), &command.Input(), &empty, nullptr, nullptr),
            PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
      }),
      ElementsAre("During RENDER the effect called copy with a record of output whose "
                  "size, row length or depth is not that of the world.",
                  "During RENDER the effect called copy with a world that has no pixels."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                int own = 0;
                command.in->inter.abort(reinterpret_cast<PF_ProgPtr>(&own));
                command.in->utils->blend();
                PF_LayerDef world{};
                command.in->utils->new_world(command.Ref(), -1, 3, 0, &world);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect called abort with an effect_ref that is not "
                          "its own.",
                          "During RENDER the effect called a host function that this host does "
                          "not serve.",
                          "During RENDER the effect asked for a world of an impossible size or "
                          "without a record to fill."));
}

TEST(ComplaintsTest, BlocksAndMessagesWithoutEnd) {
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                void* block = nullptr;
                command.in->pica_basicP->AllocateBlock(4, &block);
                int own = 0;
                EXPECT_NE(command.in->pica_basicP->FreeBlock(&own), 0);
                std::memset(command.out->return_msg, 'x', sizeof(command.out->return_msg));
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect freed a memory block that is not the host's "
                          "or was freed before.",
                          "During RENDER the effect left return_msg without an end.",
                          "During RENDER the effect did not free memory blocks of the host, 1 in "
                          "number."));
}

TEST(ComplaintsTest, ExceptionsOfTheEntryPointAndOfPasses) {
  const auto host = HostOf([](const Command&) -> PF_Err { throw std::runtime_error("oops"); });
  WorldBuffer input(4, 3, false), output(4, 3, false);
  const RenderResult result = host->Render(input, output);
  EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_THAT(result.complaints,
              ElementsAre("During RENDER the effect let an exception leave its entry point, which "
                          "ends a real host."));
  EXPECT_THAT(ComplaintsAbout([](const Command& command) {
                const auto* suite = Acquire<PF_Iterate8Suite1>(command, kPFIterate8Suite, 1);
                suite->iterate(
                    command.in, 0, 3, nullptr, nullptr, nullptr,
                    [](void*, A_long, A_long, PF_Pixel*, PF_Pixel*) -> PF_Err { throw 516; },
                    command.output);
                command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 1);
                return PF_Err_NONE;
              }),
              ElementsAre("During RENDER the effect let an exception leave the function of a pass "
                          "of iterate8."));
}

TEST(ComplaintsTest, AccumulateUntilCleared) {
  const auto host = HostOf([](const Command& command) {
    Acquire<void>(command, kPFAnsiSuite, 1);
    return PF_Err_NONE;
  });
  WorldBuffer input(4, 3, false), output(4, 3, false);
  EXPECT_EQ(host->Render(input, output).complaints.size(), 1U);
  EXPECT_EQ(host->Render(input, output).complaints.size(), 1U);
  EXPECT_EQ(host->Complaints().size(), 2U);
  host->ClearComplaints();
  EXPECT_EQ(host->Complaints().size(), 0U);
}

}  // namespace
}  // namespace vitrell::headless
