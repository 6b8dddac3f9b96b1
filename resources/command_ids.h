#pragma once
// Every command id of the program, named once: the main menu, the buttons
// that only the button bar sends, the chart menus, and the dialog fields
// that carry an id. The numbers are what the menus send and what layouts
// and tests see.

namespace velorin::cmd {

// File
inline constexpr int Exit = 10101;
inline constexpr int Restore = 10103;
inline constexpr int Open = 10104;
inline constexpr int New = 10105;
inline constexpr int Save = 10106;
inline constexpr int SaveAs = 10107;
inline constexpr int Print = 10108;
inline constexpr int PrinterSetup = 10109;
inline constexpr int SaveChartAs = 10111;

// Connection
inline constexpr int Connect = 10102;
inline constexpr int Database = 10717;
inline constexpr int Datafile = 10718;

// PrcTools
inline constexpr int Price = 10201;
inline constexpr int MakeAllPrices = 10202;
inline constexpr int Rma = 10203;
inline constexpr int Esma = 10204;
inline constexpr int Wma = 10205;
inline constexpr int Rsi = 10206;
inline constexpr int PercRange = 10207;
inline constexpr int Stochastics = 10208;
inline constexpr int Momentum = 10209;
inline constexpr int Oscillator = 10210;
inline constexpr int Spread = 10412;
inline constexpr int PriceRatio = 10406;
inline constexpr int RelativeStrength = 10413;
inline constexpr int RelativePerformance = 10414;
inline constexpr int OverboughtSold = 10415;
inline constexpr int Macd = 10416;

// VolTools
inline constexpr int Volume = 10301;
inline constexpr int MakeAllVolumes = 10302;
inline constexpr int Obv = 10303;
inline constexpr int TicVolume = 10304;
inline constexpr int Rvi = 10305;

// ProTools
inline constexpr int Trend = 10401;
inline constexpr int SwingCharting = 10402;
inline constexpr int Stdev = 10403;
inline constexpr int Correlation = 10404;
inline constexpr int HistoricalCorrelation = 10405;
inline constexpr int Fibonacci = 10407;
inline constexpr int Predictor = 10408;
inline constexpr int Overlay = 10409;

// Options
inline constexpr int FilterData = 20702;
inline constexpr int RealTime = 10110;
inline constexpr int FetchFrequency = 10419;
inline constexpr int DataValueDefault = 10505;
inline constexpr int LineExtendDefault = 10506;
inline constexpr int DefaultColours = 10507;
inline constexpr int PriceThin = 10508;   // Thin, Medium, Thick of price, model, attachments:
inline constexpr int PriceMedium = 10509; // three groups of three consecutive ids
inline constexpr int PriceThick = 10510;
inline constexpr int ModelThin = 10511;
inline constexpr int ModelMedium = 10512;
inline constexpr int ModelThick = 10513;
inline constexpr int AttachmentThin = 10514;
inline constexpr int AttachmentMedium = 10515;
inline constexpr int AttachmentThick = 10516;

// Window and Help
inline constexpr int Cascade = 10601;
inline constexpr int TileVertical = 10602;
inline constexpr int TileHorizontal = 10603;
inline constexpr int ArrangeIcons = 10604;
inline constexpr int CloseAll = 10605;
inline constexpr int About = 10701;
inline constexpr int HelpContents = 10702;
inline constexpr int FirstWindowListItem = 559; // the open windows below the Window menu

// Sent only by the button bar.
inline constexpr int ZoomIn = 10703;
inline constexpr int ZoomOut = 10704;
inline constexpr int ToggleGridButton = 10705;
inline constexpr int DataViewButton = 10706;
inline constexpr int SelectEndPointButton = 10707;
inline constexpr int SelectAllDataButton = 10708;
inline constexpr int PriceLineButton = 10709;
inline constexpr int HighLowButton = 10710;
inline constexpr int BarChartButton = 10711;
inline constexpr int CandleStickButton = 10712;
inline constexpr int DrawHoriLineButton = 10713;
inline constexpr int DrawVertLineButton = 10714;
inline constexpr int DrawTrendButton = 10715;
inline constexpr int DrawChannelButton = 10716;

// Chart menus: dialogs and the source.
inline constexpr int FibonacciValues = 10410;
inline constexpr int PeriodDialog = 10411;
inline constexpr int DataSourceChange = 10417;
inline constexpr int PriceScale = 10418;
inline constexpr int PredictorShort = 20101;
inline constexpr int PredictorMedium = 20102;
inline constexpr int PredictorLong = 20103;

// Resolution: "x 1/4" to "x 50", nine consecutive ids.
inline constexpr int ResolutionQuarter = 20301;
inline constexpr int ResolutionHalf = 20302;
inline constexpr int ResolutionOne = 20303;
inline constexpr int ResolutionTwo = 20304;
inline constexpr int ResolutionFour = 20305;
inline constexpr int ResolutionEight = 20306;
inline constexpr int ResolutionSixteen = 20307;
inline constexpr int ResolutionTwentyFive = 20308;
inline constexpr int ResolutionFifty = 20309;
inline constexpr int SelectEndPoint = 20311;
inline constexpr int GetAll = 20312;

// Style
inline constexpr int StyleHighLow = 20401;
inline constexpr int StyleCandleStick = 20402;
inline constexpr int StyleLine = 20403;
inline constexpr int StyleBarchart = 20405;

// Drawing tools and drawn objects
inline constexpr int DrawTrend = 20501;
inline constexpr int DrawChannel = 20502;
inline constexpr int ClearTrend = 20504;
inline constexpr int ClearChannel = 20505;
inline constexpr int GannUp = 20506;
inline constexpr int GannDown = 20507;
inline constexpr int ClearGann = 20508;
inline constexpr int ClearAllTrends = 20509;
inline constexpr int ClearAllChannels = 20510;
inline constexpr int ClearAllGanns = 20511;
inline constexpr int DrawVertical = 20512;
inline constexpr int DrawHorizontal = 20513;
inline constexpr int ClearVertical = 20514;
inline constexpr int ClearHorizontal = 20515;
inline constexpr int ClearAllVerticals = 20516;
inline constexpr int ClearAllHorizontals = 20517;
inline constexpr int ClearAllLines = 20518;
inline constexpr int CurveColour = 20519;
inline constexpr int GridColour = 20520;
inline constexpr int TextColour = 20521;
inline constexpr int BackgroundColour = 20522;
inline constexpr int ExtendEnvelopes = 20523;
inline constexpr int FibonacciLines = 20524;
inline constexpr int ExtendTrend = 20525;
inline constexpr int ExtendChannel = 20526;
inline constexpr int ExtendGann = 20527;
inline constexpr int DataView = 20528;
inline constexpr int HighlightRegion = 20529;
inline constexpr int ClearHighlight = 20530;
inline constexpr int ClearAllHighlights = 20531;
inline constexpr int LevelsView = 20532;
inline constexpr int MoveTrend = 20533;
inline constexpr int MoveChannel = 20534;
inline constexpr int MoveVertical = 20535;
inline constexpr int MoveHorizontal = 20536;
inline constexpr int TrendDataValue = 20537;
inline constexpr int ChannelDataValue = 20538;
inline constexpr int CloneTrend = 20539;
inline constexpr int ToggleGrid = 20701;

// The Data View's own commands; 30110 re-applies the palette to its grid.
inline constexpr int SheetUpdate = 30101;
inline constexpr int SheetReset = 30102;
inline constexpr int SheetBackground = 30103;
inline constexpr int SheetForeground = 30104;
inline constexpr int ColHeadingBackground = 30105;
inline constexpr int ColHeadingForeground = 30106;
inline constexpr int RowHeadingBackground = 30107;
inline constexpr int RowHeadingForeground = 30108;
inline constexpr int SheetDelete = 30109;
inline constexpr int SheetPalette = 30110;

// Dialog fields with an id.
inline constexpr int PeriodField = 20201;
inline constexpr int ShortTermField = 20215;
inline constexpr int LongTermField = 20216;
inline constexpr int SignalField = 20217;
inline constexpr int FracField = 20218;

} // namespace velorin::cmd
