' Several channels in one call, an exact range, and the channels at a frequency.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set view = CreateObject("kvBandscope.View")
Set view.Scope = scope
Dim rows(1, 5)                          ' one row for each channel
rows(0, 0) = "TX15"                     ' key
rows(0, 1) = "GMRS 15 output"           ' label
rows(0, 2) = 462.55                     ' frequency, MHz
rows(0, 3) = 8                          ' bandwidth, kHz: the box is twice as wide
rows(0, 4) = 47                         ' power, dBm
rows(0, 5) = RGB(31, 119, 180)          ' color of the box
rows(1, 0) = "TX16"
rows(1, 1) = "GMRS 16 output"
rows(1, 2) = 462.575
rows(1, 3) = 8
rows(1, 4) = 40
rows(1, 5) = RGB(56, 142, 60)
WScript.Echo view.AddTXChannels(rows) & " channels added"
view.ShowRange 462.5, 462.7             ' MHz; exactly this range, without a margin
view.ZoomBy 2                           ' half of it, around its middle
WScript.Echo "From " & scope.DisplayMinFreq & " to " & scope.DisplayMaxFreq & " MHz"
For Each channel In view.HitTest(462.56, 0.01)
    WScript.Echo "Near 462.56 MHz: " & channel.sLabel
Next
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file
If file <> "" Then WScript.Quit 42      ' 42 means success: after a script error the exit code may be 0
