#include "skills/SkillPool.h"

#include "worldmodel/WorldModel.h"

void SkillPool::initialize(WorldModel* model, Effectors* commands) {
    worldModel = model;
    effectors = commands;
    myself = &model->myself();
    ball = &model->ball();
}
