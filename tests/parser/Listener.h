#pragma once

#include "parser/RCC_Parser.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

/// Counts the records of one kind, on the listener's account too, and keeps a copy of the latest.
template <class T>
struct Recorder : RCC_Handler<RCC_Pointer<T>> {
    Recorder(RCC_Parser::Handlers<T>& handlers, int& total) : allCalls(total) {
        handlers.push_back(this);
    }

    void handle(RCC_Pointer<T> const& record) override {
        ++calls;
        ++allCalls;
        last = *record;
    }

    int calls = 0;
    int& allCalls;
    T last;
};

/// A parser of the team Alpha with a handler for every kind.
struct Listener {
    RCC_Parser parser{0, "Alpha", 0};
    int calls = 0;
    Recorder<RCC_Visual> visual{parser.visualHandlers, calls};
    Recorder<RCC_SenseBody> senseBody{parser.senseBodyHandlers, calls};
    Recorder<RCC_RefAudio> refAudio{parser.refAudioHandlers, calls};
    Recorder<RCC_SelfAudio> selfAudio{parser.selfAudioHandlers, calls};
    Recorder<RCC_PlayerAudio> playerAudio{parser.playerAudioHandlers, calls};
    Recorder<RCC_CoachAudio> coachAudio{parser.coachAudioHandlers, calls};
    Recorder<RCC_Score> score{parser.scoreHandlers, calls};
    Recorder<RCC_Substitution> substitution{parser.substitutionHandlers, calls};
    Recorder<RCC_Error> error{parser.errorHandlers, calls};
    Recorder<RCC_InitMsg> initMsg{parser.initMsgHandlers, calls};
    Recorder<RCC_ServerParam> serverParam{parser.serverParamHandlers, calls};
    Recorder<RCC_PlayerParam> playerParam{parser.playerParamHandlers, calls};
    Recorder<RCC_PlayerType> playerType{parser.playerTypeHandlers, calls};
    Recorder<RCC_FullState> fullState{parser.fullStateHandlers, calls};

    /// Whether exactly one handler was called and a record returned, or neither (then false).
    bool hears(std::string_view message) {
        int const before = calls;
        RCC_Object* const record = parser.parse(RCC_String(message));
        RCC_Memory::remove(record);
        if (calls != before + (record != nullptr ? 1 : 0)) {
            throw RCC_Exception("a record was returned without a call, or a call made without it");
        }
        return record != nullptr;
    }
};

/// A test of what a listener hears.
struct Listening : testing::Test, Listener {
    /// Refuses each part, put between before and after.
    void expectRefused(std::string const& before, std::vector<std::string> const& parts,
                       std::string const& after) {
        for (std::string const& part : parts) {
            std::string message(before);
            message.append(part).append(after);
            EXPECT_FALSE(hears(message)) << message;
        }
    }
};

/// " first first+1 ...", count numbers: with it, each value names its place in a message.
inline std::string numbersFrom(int first, int count) {
    std::string text;
    for (int i = first; i < first + count; ++i) {
        text.append(" ").append(std::to_string(i));
    }
    return text;
}
