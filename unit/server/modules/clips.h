#pragma once

#include "unit/server/module.h"

namespace Unit {

/// The clips on the camera's media, and playing them: each take becomes a clip. Only a camera that tells everything
/// lists its clips.
class Clips final : public Module {
  public:
    explicit Clips(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    static constexpr std::size_t mediaCount = 2;

    struct Medium {
        Medium(Store& values, int number);
        std::int32_t clips() const { return static_cast<std::int32_t>(title.live(size)); }
        Text name;
        Number size;
        Mask enabled;
        Column playable, rate, title, timecode, length, codec;
    };

    bool present() const;
    void insert(std::size_t media);
    void clear();
    void listClips();
    void add(Medium& medium, double seconds, bool playable);
    void followRecording(double seconds);
    // Whatever numbers stand in the memory, they name something that is there.
    const Medium& chosenMedium() const;
    std::size_t chosenRow(const Medium& medium) const;
    void choose(std::int32_t medium, std::int32_t clip);
    void moveBy(std::int32_t clips);
    void togglePlay();
    void setSpeed();
    void stop();
    void play(double seconds);
    void show();

    std::vector<Medium> media_;
    Number state_{store, "VarCamState"}, available_{store, "VarCamDataAvailable"},
        number_{store, "VarCamClipListNumber"};
    Number medium_{store, "VarCamClipListAct"}, clip_{store, "VarCamClipListClipAct"};
    Number wantedMedium_{store, "VarCamClipListSet"}, wantedClip_{store, "VarCamClipListClipSet"};
    Number progress_{store, "VarCamClipListProgress"}, speed_{store, "VarCamClipPlaybackSpeed"};
    Flag choose_{store, "VarCamClipListSendClipSet"}, play_{store, "VarCamClipPlay"},
        plays_{store, "VarCamClipPlayStatus"};
    Flag previous_{store, "VarCamClipSelectPrevious"}, next_{store, "VarCamClipSelectNext"};
    Flag stop_{store, "VarCamClipListPlaybackStop"}, last_{store, "VarCamClipListLastClip"};
    Flag playable_{store, "VarCamClipListPlayable"}, fastForward_{store, "VarCamPlaybackFastForwardAvailable"};
    Text codec_{store, "VarCamMediaCodec"};
    Real frameRate_{store, "VarCamSpeedAct"};
    std::size_t inserted_ = 1;
    bool listed_ = false;
    double loading_ = 0;  ///< seconds since the camera began to tell its clips
    double take_ = -1;    ///< seconds that the camera has been recording; negative when it does not
    double played_ = 0;   ///< seconds into the clip
    int takes_ = 0;
};

}  // namespace Unit
