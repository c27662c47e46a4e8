#include "sensing/Sensors.h"

RCC_Parser Sensors::parser(0, "", 0);

std::vector<RCC_Line> Sensors::lines = roomForOneSee<RCC_Line>();
std::vector<RCC_Flag> Sensors::flags = roomForOneSee<RCC_Flag>();
std::vector<RCC_Flag> Sensors::goals = roomForOneSee<RCC_Flag>();
std::vector<RCC_Player> Sensors::allies = roomForOneSee<RCC_Player>();
std::vector<RCC_Player> Sensors::enemies = roomForOneSee<RCC_Player>();
std::vector<RCC_Player> Sensors::neuts = roomForOneSee<RCC_Player>();
std::vector<RCC_Ball> Sensors::balls = roomForOneSee<RCC_Ball>();

VisualHandler Sensors::vih;
SenseBodyHandler Sensors::sbh;
RefAudioHandler Sensors::rah;
SelfAudioHandler Sensors::sah;
PlayerAudioHandler Sensors::pah;
CoachAudioHandler Sensors::cah;
ScoreHandler Sensors::sch;
SubstitutionHandler Sensors::suh;
ErrorHandler Sensors::erh;
InitMsgHandler Sensors::imh;
ThinkHandler Sensors::thh;
ServerParamHandler Sensors::sph;
PlayerParamHandler Sensors::pph;
PlayerTypeHandler Sensors::pth;

Sensors::Sensors(Communicator* link, char const* teamname) {
    comm = link;
    parser.teamName = teamname;
    parser.visualHandlers.push_back(&vih);
    parser.senseBodyHandlers.push_back(&sbh);
    parser.refAudioHandlers.push_back(&rah);
    parser.selfAudioHandlers.push_back(&sah);
    parser.playerAudioHandlers.push_back(&pah);
    parser.coachAudioHandlers.push_back(&cah);
    parser.scoreHandlers.push_back(&sch);
    parser.substitutionHandlers.push_back(&suh);
    parser.errorHandlers.push_back(&erh);
    parser.initMsgHandlers.push_back(&imh);
    parser.thinkHandlers.push_back(&thh);
    parser.serverParamHandlers.push_back(&sph);
    parser.playerParamHandlers.push_back(&pph);
    parser.playerTypeHandlers.push_back(&pth);
}

void Sensors::sense() {
    comm->getNextMessage(message.data());
    parseMessage();
}

bool Sensors::senseUnlessSilent() {
    if (!comm->getMessageUnlessSilent(message.data())) return false;
    parseMessage();
    return true;
}

void Sensors::parseMessage() {
    static_cast<void>(readings.load(std::memory_order_acquire)); // see doneReading()
    RCC_String const text(message.data()); // ends at the first NUL, whatever the datagram holds
    RCC_Memory::remove(parser.parse(text));
}
