' Many changes with one drawing, and the cursor measured from a marker.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set view = CreateObject("kvBandscope.View")
Set view.Scope = scope
view.BeginUpdate                        ' from here on, drawings wait
For i = 0 To 9
    Set channel = CreateObject("kvBandscope.FreqSlot")
    channel.sKey = "TX" & i
    channel.dFreq = 450 + i / 10        ' MHz
    channel.dBW = 25                    ' kHz
    channel.dPwrDBM = 40
    scope.AddTXChnl channel
    scope.DrawInitialDisplay
Next
view.EndUpdate                          ' draws once
view.SnapToChannels = True              ' for the user's marker and cursor
view.Marker = 450.3                     ' MHz
view.MarkerVisible = True
scope.CursorVal = 450.5
WScript.Echo "Cursor minus marker: " & Round((scope.CursorVal - view.Marker) * 1000, 3) & " kHz"
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file
If file <> "" Then WScript.Quit 42      ' 42 means success: after a script error the exit code may be 0
