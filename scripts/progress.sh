# shellcheck shell=bash
# How far long work has come, on standard error: one moving line in a terminal, a line every quarter elsewhere.

# remaining PERCENT SECONDS: what is left of work that has come this far in this time. Early estimates mislead.
remaining() {
    (($1 >= 3 && $1 < 100 && $2 >= 2)) || return 0
    local left=$(($2 * (100 - $1) / $1))
    printf ', about %d:%02d left' $((left / 60)) $((left % 60))
}

# progress: reads the output of work that is under way. Lines of four fields, "<tab>WORK<tab>PERCENT<tab>STEP", are shown
# as progress; all others go to standard output as they are.
progress() {
    local line blank work percent step last_work='' shown begun columns=0
    [ ! -t 2 ] || columns=$(stty size <&2 | cut -d' ' -f2)
    while IFS= read -r line; do
        if [[ $line != $'\t'*$'\t'*$'\t'* ]]; then
            ((columns == 0)) || printf '\r\033[K' >&2
            printf '%s\n' "$line"
            continue
        fi
        IFS='|' read -r blank work percent step <<<"${line//$'\t'/|}"
        percent=${percent//[ %]/}
        [ "$work" = "$last_work" ] || { last_work=$work shown=0 begun=$SECONDS; }
        line="$command: $work: $percent %$(remaining "$percent" $((SECONDS - begun)))"
        if ((columns > 0)); then
            line="$line, $step"
            printf '\r\033[K%s' "${line:0:columns-1}" >&2
        elif ((percent / 25 > shown)); then
            shown=$((percent / 25))
            printf '%s\n' "$line" >&2
        fi
    done
    ((columns == 0)) || printf '\r\033[K' >&2
}
