#include "apps/gui/main/messagedata.h"

#include <algorithm>

#include "model/catalogue/events.h"
#include "model/texts.h"

namespace {

constexpr Engine::TextId noText;
constexpr int noEvent = 0;

/// A message that is only to be read.
constexpr MessageData notice(int id, int priority, Engine::TextId title, Engine::TextId text, float autoClose = 0) {
    return {id, priority, title, text, noText, noEvent, Texts::ok, noEvent, autoClose};
}

/// A question: left leaves, right does.
constexpr MessageData question(int id, int priority, Engine::TextId title, Engine::TextId text, int cancelEvent,
                               Engine::TextId action, int actionEvent) {
    return {id, priority, title, text, Texts::cancel, cancelEvent, action, actionEvent, 0};
}

constexpr const char* names[] = {"None",
                                 "WrongModemVersion",
                                 "OneWireFailed",
                                 "OneWireModemCorrupted",
                                 "OneWireRingCorrupted",
                                 "FileNotFound",
                                 "FileAlreadyExists",
                                 "EndSlateWarning",
                                 "MissingHardwareInfoWarning",
                                 "FatalSystemError",
                                 "ClearLogFiles",
                                 "ClearLensFiles",
                                 "CustomRingUpload",
                                 "SecondMotorController",
                                 "CinefadeModeWarning",
                                 nullptr,
                                 "ScreenSaverImagesMissing",
                                 nullptr,
                                 nullptr,
                                 "FileEditFromUsbNotPossible",
                                 "ScreenSaverFileFormat",
                                 "DiopterLensWrongCombo",
                                 "DiopterShimLimits",
                                 "DiopterInputMissing",
                                 "DiopterShortcutUnavailableWarning",
                                 "CamZoomUserButtonNotSupportedWarning"};

constexpr MessageData rows[] = {
    {1, 0, Texts::message_wrong_modem_title, Texts::message_wrong_modem_text, noText, noEvent, Texts::update,
     Model::Event_ModemUpdateStart, 0},
    notice(2, 1, Texts::message_one_wire_failed_title, Texts::message_one_wire_failed_text),
    notice(3, 1, Texts::message_modem_chip_title, Texts::message_modem_chip_text),
    notice(4, 1, Texts::message_ring_chip_title, Texts::message_ring_chip_text),
    notice(5, 1, Texts::message_file_not_found_title, Texts::message_file_not_found_text),
    question(6, 1, Texts::message_file_exists_title, Texts::message_file_exists_text, Model::Event_EditCanceled,
             Texts::replace, Model::Event_EditOverwrite),
    notice(7, 1, Texts::message_end_slate_title, Texts::message_end_slate_text, 3.0F),
    notice(8, 0, Texts::message_no_hardware_info_title, Texts::message_no_hardware_info_text),
    notice(9, 0, Texts::message_fatal_error_title, Texts::message_fatal_error_text),
    question(10, 2, Texts::message_clear_logs_title, Texts::message_clear_logs_text, Model::Event_EditCanceled,
             Texts::clear, Model::Event_EditConfirmed),
    question(11, 2, Texts::message_clear_lenses_title, Texts::message_clear_lenses_text, noEvent, Texts::clear,
             Model::Event_FileBrowserDeleteFile),
    question(12, 2, Texts::message_ring_upload_title, Texts::message_ring_upload_text,
             Model::Event_CustomRingUploadCancel, Texts::load, Model::Event_CustomRingUploadConfirm),
    notice(13, 0, Texts::message_second_controller_title, Texts::message_second_controller_text),
    notice(14, 1, Texts::message_cinefade_mode_title, Texts::message_cinefade_mode_text),
    notice(16, 2, Texts::message_no_pictures_title, Texts::message_no_pictures_text),
    notice(19, 2, Texts::message_usb_edit_title, Texts::message_usb_edit_text),
    notice(20, 2, Texts::message_picture_format_title, Texts::message_picture_format_text),
    notice(21, 1, Texts::message_diopter_combo_title, Texts::message_diopter_combo_text),
    notice(22, 1, Texts::message_shim_limits_title, Texts::message_shim_limits_text),
    notice(23, 1, Texts::message_diopter_input_title, Texts::message_diopter_input_text),
    notice(24, 1, Texts::message_diopter_shortcut_title, Texts::message_diopter_shortcut_text),
    notice(25, 1, Texts::message_cam_zoom_title, Texts::message_cam_zoom_text),
};
static_assert(std::ranges::is_sorted(rows, {}, &MessageData::id));

}  // namespace

const std::span<const MessageData> Messages::table = rows;

const char* Messages::nameOf(int id) {
    const bool known = id >= 0 && id < static_cast<int>(std::size(names)) && names[id] != nullptr;
    return known ? names[id] : "Unknown";
}
