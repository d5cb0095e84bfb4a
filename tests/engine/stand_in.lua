-- REAPER's functions, as far as the script may call them: each call is a line of "calls".
local folder, cycles = arg[1], tonumber(arg[2])
local calls, time, deferred = io.open(folder .. "/calls", "w"), 0, nil
local state = { play = 0, tempo = 98, selected = 2, armed = 0 }
local function told(name, ...)
  calls:write(name)
  for _, value in ipairs({ ... }) do calls:write(" ", tostring(value)) end
  calls:write("\n")
end
reaper = {
  get_action_context = function() return true, folder .. "/ostrell_bridge.lua" end,
  defer = function(f) deferred = f end,
  time_precise = function() return time end,
  GetPlayState = function() return state.play end,
  OnPlayButton = function() state.play = 1 told("play") end,
  OnStopButton = function() state.play = 0 told("stop") end,
  Main_OnCommand = function(id) told("action", id) end,
  SetEditCurPos = function(at) told("cursor", at) end,
  GetSelectedTrack = function() return state.selected end,
  CountTracks = function() return 3 end,
  GetTrack = function(_, i) return i + 1 end,
  GetMediaTrackInfo_Value = function(track, what)
    return what == "I_RECARM" and state.armed or track + 0.0 end,
  SetMediaTrackInfo_Value = function(track, _, value) state.armed = value told("arm", track, value) end,
  SetOnlyTrackSelected = function(track) state.selected = track told("select", track) end,
  Undo_DoUndo2 = function() told("undo") end,
  Master_GetTempo = function() return state.tempo end,
  SetCurrentBPM = function(_, tempo) state.tempo = tempo told("tempo", tempo) end,
  GetPlayPosition = function() return 7.5 end,
  GetCursorPosition = function() return 1.5 end,
  AddProjectMarker = function(_, _, at) told("marker", at) end,
}
setmetatable(reaper, { __index = function(_, name) error("no function " .. name) end })
dofile(arg[3])
for i = 1, cycles do
  if i == 2 then os.rename(folder .. "/later", folder .. "/kelo-commands") end
  time = i * 0.1
  deferred()
end
