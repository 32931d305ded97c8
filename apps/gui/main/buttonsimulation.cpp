#include "apps/gui/main/buttonsimulation.h"

#include "model/catalogue/events.h"

std::optional<Engine::EventId> SimulatedButton::pressEvent(int button) {
    switch (button) {
        case 1: return Model::Event_ButtonSoftRecordPressed;
        case 2: return Model::Event_ButtonSoftPagePressed;
        case 3: return Model::Event_ButtonSoftULPressed;
        case 4: return Model::Event_ButtonSoftUMPressed;
        case 5: return Model::Event_ButtonSoftURPressed;
        case 6: return Model::Event_ButtonSoftLLPressed;
        case 7: return Model::Event_ButtonSoftLMPressed;
        case 8: return Model::Event_ButtonSoftLRPressed;
        case function: return Model::Event_ButtonSoftFunctionPressed;
        case 10: return Model::Event_ButtonSoftPowerPressed;
        case 11: return Model::Event_ButtonSoftUser1Pressed;
        case 12: return Model::Event_ButtonSoftUser2Pressed;
        case 13: return Model::Event_ButtonSoftUser3Pressed;
        default: return std::nullopt;
    }
}
