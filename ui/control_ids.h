// Identifiers of the controls in the program's windows. The test harness
// drives the windows from outside by the same numbers.
#pragma once

// Schedule Event.
constexpr int kScheduleAsteroidEdit = 33008;
constexpr int kScheduleStarEdit = 33009;
constexpr int kScheduleCommentEdit = 33010;
constexpr int kScheduleHibernateBox = 33011;
constexpr int kScheduleShutdownBox = 33012;
constexpr int kScheduleButton = 33013;
constexpr int kScheduleCancelButton = 33014;

// View, Edit, Delete Events.
constexpr int kEventListShowExpiredBox = 32968;
constexpr int kEventListAscendingBox = 32969;
constexpr int kEventListEditButton = 32970;
constexpr int kEventListDeleteButton = 32971;
constexpr int kEventListCancelButton = 32972;

// Hibernate.
constexpr int kCancelPowerActionButton = 33018;

// File Options.
constexpr int kFileVideoPrefixEdit = 33200;
constexpr int kFileVideoPattern = 33201;
constexpr int kFileVideoSelectFolder = 33202;
constexpr int kFileVideoFolder = 33203;
constexpr int kFileVideoUseDefault = 33204;
constexpr int kFileLogPrefixEdit = 33205;
constexpr int kFileLogPattern = 33206;
constexpr int kFileLogSelectFolder = 33207;
constexpr int kFileLogFolder = 33208;
constexpr int kFileLogUseDefault = 33209;
constexpr int kFileGlobalPrefixEdit = 33210;
constexpr int kFileHostNameButton = 33211;
constexpr int kFileSaveButton = 33212;
constexpr int kFileCancelButton = 33213;

// Default Recording Duration.
constexpr int kDurationPicker = 33220;
constexpr int kDurationSaveButton = 33221;
constexpr int kDurationCancelButton = 33222;

// Codec Selector.
constexpr int kCodecSubtypeLabel = 33230;
constexpr int kCodecList = 33231;
constexpr int kCodecSaveBox = 33232;
constexpr int kCodecOkButton = 33233;
constexpr int kCodecCancelButton = 33234;

// Event Pending Options.
constexpr int kPendingCountdownRadio = 33240;
constexpr int kPendingUtcRadio = 33241;
constexpr int kPendingSaveBox = 33242;
constexpr int kPendingOkButton = 33243;
constexpr int kPendingCancelButton = 33244;

// Performance Options.
constexpr int kPerformanceDisplayOffBox = 33250;
constexpr int kPerformanceFiltersOffBox = 33251;
constexpr int kPerformanceEvrRadio = 33252;
constexpr int kPerformanceVmr9Radio = 33253;
constexpr int kPerformanceVmr7Radio = 33254;
constexpr int kPerformanceSaveButton = 33255;
constexpr int kPerformanceOkButton = 33256;
constexpr int kPerformanceCancelButton = 33257;

// Miscellaneous Options.
constexpr int kMiscSpacingBox = 33260;
constexpr int kMiscGpsBox = 33261;
constexpr int kMiscFileColourBox = 33262;
constexpr int kMiscSaveButton = 33263;
constexpr int kMiscCancelButton = 33264;

// Brightness and Contrast.
constexpr int kBrightnessSlider = 33300;
constexpr int kBrightnessLabel = 33301;
constexpr int kContrastSlider = 33302;
constexpr int kContrastLabel = 33303;
constexpr int kColorInFileBox = 33304;

// Video Magnify: the five radios in their order on the window.
constexpr int kMagnifyHalfRadio = 33310;
constexpr int kMagnifyThreeQuartersRadio = 33311;
constexpr int kMagnifyNoneRadio = 33312;
constexpr int kMagnifyOneAndHalfRadio = 33313;
constexpr int kMagnifyDoubleRadio = 33314;

// Pixel Saturation.
constexpr int kSaturationSlider = 33320;
constexpr int kSaturationUseBox = 33321;
constexpr int kSaturationRemoveBox = 33322;
constexpr int kSaturationSaveButton = 33323;
constexpr int kSaturationCancelButton = 33324;

// Frame Integration.
constexpr int kIntegrationCountBox = 33330;
constexpr int kIntegrationStartButton = 33331;
constexpr int kIntegrationCancelButton = 33332;

// USB GPS Receiver.
constexpr int kGpsCloseButtonId = 33050;
constexpr int kGpsCapturePositionButtonId = 33051;
constexpr int kGpsSetTimeDifferenceButtonId = 33052;

// Video Input Device.
constexpr int kSelectDeviceList = 33400;
constexpr int kSelectDeviceDefaultBox = 33401;
constexpr int kSelectDeviceIgnoreButton = 33402;
constexpr int kSelectDeviceIgnoredList = 33403;
constexpr int kSelectDeviceRestoreButton = 33404;
constexpr int kSelectDeviceOkButton = 33405;
constexpr int kSelectDeviceCancelButton = 33406;

// Device Properties. The property rows' labels and sliders stand in the
// order Brightness, Contrast, Hue, Saturation, Sharpness, Gain.
constexpr int kFormatMediaGroup = 33420;
constexpr int kFormatPropertiesGroup = 33421;
constexpr int kFormatAutoDetectBox = 33422;
constexpr int kFormatStandardFrame = 33423;
constexpr int kFormatNtscRadio = 33424;
constexpr int kFormatPalRadio = 33425;
constexpr int kFormatDigitalLabel = 33426;
constexpr int kFormatFrameRateLabel = 33427;
constexpr int kFormatFrameRateList = 33428;
constexpr int kFormatFrameSizeLabel = 33429;
constexpr int kFormatFrameSizeList = 33430;
constexpr int kFormatSubtypeLabel = 33431;
constexpr int kFormatSubtypeField = 33432;
constexpr int kFormatFirstPropertyLabel = 33433;  // to 33438
constexpr int kFormatFirstPropertySlider = 33439;  // to 33444
constexpr int kFormatDefaultsButton = 33445;
constexpr int kFormatSaveBox = 33446;
constexpr int kFormatOkButton = 33447;
constexpr int kFormatCancelButton = 33448;
