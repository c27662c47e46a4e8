#pragma once

#include "parser/RCC_Parser.h"

#include <string_view>

/// Counts the records of one kind and keeps a copy of the latest.
template <class T>
struct Recorder : RCC_Handler<RCC_Pointer<T>> {
    int calls = 0;
    T last;

    void handle(RCC_Pointer<T> const& record) override {
        ++calls;
        last = *record;
    }
};

/// A parser of the team Alpha with a handler for every kind.
struct Listener {
    RCC_Parser parser{0, "", 0};
    Recorder<RCC_Visual> visual;
    Recorder<RCC_SenseBody> senseBody;
    Recorder<RCC_RefAudio> refAudio;
    Recorder<RCC_SelfAudio> selfAudio;
    Recorder<RCC_PlayerAudio> playerAudio;
    Recorder<RCC_CoachAudio> coachAudio;
    Recorder<RCC_Score> score;
    Recorder<RCC_Substitution> substitution;
    Recorder<RCC_Error> error;
    Recorder<RCC_InitMsg> initMsg;
    Recorder<RCC_ServerParam> serverParam;
    Recorder<RCC_PlayerParam> playerParam;
    Recorder<RCC_PlayerType> playerType;
    Recorder<RCC_FullState> fullState;

    Listener() {
        parser.teamName = "Alpha";
        parser.visualHandlers.push_back(&visual);
        parser.senseBodyHandlers.push_back(&senseBody);
        parser.refAudioHandlers.push_back(&refAudio);
        parser.selfAudioHandlers.push_back(&selfAudio);
        parser.playerAudioHandlers.push_back(&playerAudio);
        parser.coachAudioHandlers.push_back(&coachAudio);
        parser.scoreHandlers.push_back(&score);
        parser.substitutionHandlers.push_back(&substitution);
        parser.errorHandlers.push_back(&error);
        parser.initMsgHandlers.push_back(&initMsg);
        parser.serverParamHandlers.push_back(&serverParam);
        parser.playerParamHandlers.push_back(&playerParam);
        parser.playerTypeHandlers.push_back(&playerType);
        parser.fullStateHandlers.push_back(&fullState);
    }

    int calls() const {
        return visual.calls + senseBody.calls + refAudio.calls + selfAudio.calls +
               playerAudio.calls + coachAudio.calls + score.calls + substitution.calls +
               error.calls + initMsg.calls + serverParam.calls + playerParam.calls +
               playerType.calls + fullState.calls;
    }

    /// Whether exactly one handler was called and a record returned, or neither (then false).
    bool hears(std::string_view message) {
        int const before = calls();
        RCC_Object* const record = parser.parse(RCC_String(message));
        RCC_Memory::remove(record);
        if (calls() != before + (record != nullptr ? 1 : 0)) {
            throw RCC_Exception("a record was returned without a call, or a call made without it");
        }
        return record != nullptr;
    }
};
