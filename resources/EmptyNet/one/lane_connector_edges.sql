-- Generation 3 keeps the edges of a lane connector's curve beside its centre line.
alter table LaneConnector add leftBreakPointsJson BINARY(102400);
alter table LaneConnector add rightBreakPointsJson BINARY(102400);
