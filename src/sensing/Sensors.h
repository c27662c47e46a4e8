#pragma once

#include <array>
#include <atomic>
#include <vector>

#include "link/Communicator.h"
#include "parser/RCC_Parser.h"
#include "sensing/Arrivals.h"
#include "sensing/RCCParserSupport.h"

/// The receiving end of the link, and the whole contract between parser and world model: the newest
/// record of every kind of message, and a flag for each that says that it is new.
///
/// Created by `Agent`; all state is class-level. The sense thread writes the records and raises the
/// flags; the main thread clears a flag, reads its record and then says that it is done. A see or
/// sense_body is also stamped before main may take it (`Arrivals`). There is no lock: a record may
/// be overwritten while it is read, and then mixes two messages of its kind. What keeps that
/// harmless is that records own fixed storage at a fixed address, that the vectors have room for
/// the largest see from the start and never move, and that main reads right after it is woken.
class Sensors {
public:
    /// Gives the parser the team name, by which it sorts players, and registers the handlers.
    Sensors(Communicator* link, char const* teamname);

    /// Blocks for one message, parses it and lets its handler keep it. Sense thread.
    static void sense();
    /// The same, but gives up and returns false when the server stays silent for as long as
    /// Communicator::limitSilence has set.
    static bool senseUnlessSilent();
    /// What was read until now is read: orders it before whatever is kept from now on, so that only
    /// reading while a record is overwritten remains a race. Main thread.
    static void doneReading() { readings.fetch_add(1, std::memory_order_release); }

    // What was seen last; each see replaces all seven.
    static std::vector<RCC_Line> lines;
    static std::vector<RCC_Flag> flags;
    static std::vector<RCC_Flag> goals;
    static std::vector<RCC_Player> allies;
    static std::vector<RCC_Player> enemies;
    static std::vector<RCC_Player> neuts; ///< team not recognised
    static std::vector<RCC_Ball> balls;   ///< none or one
    inline static Arrivals arrivals;      ///< of see and sense_body
    inline static ArrivalFlag newVisual{arrivals, Arrivals::SEE};

    // Null until the first message of the kind. The flag, raised after the record is complete,
    // also publishes the pointer.
    inline static RCC_SenseBody* senseBody = nullptr;
    inline static RCC_RefAudio* refAudio = nullptr;
    inline static RCC_SelfAudio* selfAudio = nullptr;
    inline static RCC_PlayerAudio* playerAudio = nullptr;
    inline static RCC_CoachAudio* coachAudio = nullptr;
    inline static RCC_Score* score = nullptr;
    inline static RCC_Substitution* substitution = nullptr;
    inline static RCC_Error* error = nullptr;
    inline static RCC_InitMsg* initMsg = nullptr;
    inline static RCC_Think* think = nullptr;
    inline static RCC_ServerParam* serverParam = nullptr;
    inline static RCC_PlayerParam* playerParam = nullptr;
    inline static RCC_PlayerType* playerType = nullptr;

    inline static ArrivalFlag newSenseBody{arrivals, Arrivals::SENSE_BODY};
    inline static std::atomic<bool> newRefAudio = false;
    inline static std::atomic<bool> newSelfAudio = false;
    inline static std::atomic<bool> newPlayerAudio = false;
    inline static std::atomic<bool> newCoachAudio = false;
    inline static std::atomic<bool> newScore = false;
    inline static std::atomic<bool> newSubstitution = false;
    inline static std::atomic<bool> newError = false;
    inline static std::atomic<bool> newInitMsg = false;
    inline static std::atomic<bool> newThink = false;
    inline static std::atomic<bool> newServerParam = false;
    inline static std::atomic<bool> newPlayerParam = false;
    inline static std::atomic<bool> newPlayerType = false;

    static RCC_Parser parser;

private:
    static void parseMessage();

    inline static Communicator* comm = nullptr;
    inline static std::atomic<unsigned> readings = 0;
    inline static std::array<char, Communicator::MESSAGE_BUFFER_SIZE> message{};

    static VisualHandler vih;
    static SenseBodyHandler sbh;
    static RefAudioHandler rah;
    static SelfAudioHandler sah;
    static PlayerAudioHandler pah;
    static CoachAudioHandler cah;
    static ScoreHandler sch;
    static SubstitutionHandler suh;
    static ErrorHandler erh;
    static InitMsgHandler imh;
    static ThinkHandler thh;
    static ServerParamHandler sph;
    static PlayerParamHandler pph;
    static PlayerTypeHandler pth;
};
